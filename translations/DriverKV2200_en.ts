<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_GB" sourcelanguage="es_AR">
<context>
    <name>kv::BarraDeBusqueda</name>
    <message>
        <source>&amp;Mayúsculas</source>
        <translation>&amp;Match case</translation>
    </message>
    <message>
        <source>Buscar</source>
        <translation>Find</translation>
    </message>
    <message>
        <source>Reemplazar por</source>
        <translation>Replace with</translation>
    </message>
    <message>
        <source>Distinguir mayúsculas de minúsculas</source>
        <translation>Tell capitals from small letters</translation>
    </message>
    <message>
        <source>No se encontró</source>
        <translation>Not found</translation>
    </message>
    <message>
        <source>&amp;Anterior</source>
        <translation>&amp;Previous</translation>
    </message>
    <message>
        <source>&amp;Siguiente</source>
        <translation>&amp;Next</translation>
    </message>
    <message>
        <source>Cerrar</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>&amp;Reemplazar</source>
        <translation>&amp;Replace</translation>
    </message>
    <message>
        <source>Reemplazar &amp;todo</source>
        <translation>Replace &amp;all</translation>
    </message>
    <message>
        <source>%1 de %2</source>
        <translation>%1 of %2</translation>
    </message>
    <message>
        <source>%1 reemplazos</source>
        <translation>%1 replaced</translation>
    </message>
</context>
<context>
    <name>kv::BarraDeEstado</name>
    <message>
        <source>Respuestas de las estaciones por segundo</source>
        <translation>Answers of the stations per second</translation>
    </message>
    <message>
        <source>Conexiones con estaciones, de todas</source>
        <translation>Connections with stations, of all</translation>
    </message>
    <message>
        <source>⇄ %1 de %2 conectadas</source>
        <translation>⇄ %1 of %2 connected</translation>
    </message>
    <message>
        <source>%1 respuestas/s</source>
        <translation>%1 answers/s</translation>
    </message>
    <message>
        <source>Variables que se leen y están BAD, de todas</source>
        <translation>Variables that are read and BAD, of all</translation>
    </message>
    <message>
        <source>Variables OK cuya última lectura es más vieja de lo que debe</source>
        <translation>Variables that are OK and whose last reading is older than it should be</translation>
    </message>
    <message>
        <source>Estaciones que no contestan</source>
        <translation>Stations that do not answer</translation>
    </message>
    <message>
        <source>El supervisor, y desde cuándo</source>
        <translation>The supervisor, and since when</translation>
    </message>
    <message>
        <source>Última corrida del guion</source>
        <translation>Last run of the script</translation>
    </message>
    <message>
        <source>Avisos y alarmas sin reconocer (F3)</source>
        <translation>Warnings and alarms not acknowledged (F3)</translation>
    </message>
    <message>
        <source>Supervisor desde %1</source>
        <translation>Supervisor since %1</translation>
    </message>
    <message>
        <source>Supervisor sin identificarse desde %1</source>
        <translation>Supervisor not logged in since %1</translation>
    </message>
    <message>
        <source>Supervisor: ninguno todavía</source>
        <translation>Supervisor: none yet</translation>
    </message>
    <message>
        <source>✖ Sin supervisor desde %1</source>
        <translation>✖ No supervisor since %1</translation>
    </message>
    <message>
        <source>✖ %1 de %2 BAD</source>
        <translation>✖ %1 of %2 BAD</translation>
    </message>
    <message>
        <source>◷ %1 viejas</source>
        <translation>◷ %1 old</translation>
    </message>
    <message>
        <source>⊘ %1 estaciones mudas</source>
        <translation>⊘ %1 silent stations</translation>
    </message>
    <message>
        <source>⚑ %1 sin reconocer</source>
        <translation>⚑ %1 not acknowledged</translation>
    </message>
    <message>
        <source>✖ Guion</source>
        <translation>✖ Script</translation>
    </message>
    <message>
        <source>● Guion</source>
        <translation>● Script</translation>
    </message>
    <message>
        <source>○ Guion</source>
        <translation>○ Script</translation>
    </message>
    <message>
        <source>Supervisor</source>
        <translation>Supervisor</translation>
    </message>
    <message>
        <source>Supervisor: no</source>
        <translation>Supervisor: no</translation>
    </message>
    <message>
        <source>✖ Supervisor</source>
        <translation>✖ Supervisor</translation>
    </message>
    <message>
        <source>✖ %1 BAD</source>
        <translation>✖ %1 BAD</translation>
    </message>
</context>
<context>
    <name>kv::BarraDeReparto</name>
    <message>
        <source>respuestas</source>
        <translation>answers</translation>
    </message>
    <message>
        <source>silencio</source>
        <translation>silence</translation>
    </message>
    <message>
        <source>pausas</source>
        <translation>pauses</translation>
    </message>
    <message>
        <source>libre</source>
        <translation>free</translation>
    </message>
</context>
<context>
    <name>kv::CabezaDeForm1</name>
    <message>
        <source>P&amp;uertos…</source>
        <translation>&amp;Ports…</translation>
    </message>
    <message>
        <source>&amp;Tamaño</source>
        <translation>&amp;Size</translation>
    </message>
    <message>
        <source>Ventana chica o entera (F11)</source>
        <translation>Small or full window (F11)</translation>
    </message>
    <message>
        <source>En marcha desde</source>
        <translation>Running since</translation>
    </message>
    <message>
        <source>Puntos publicados</source>
        <translation>Published points</translation>
    </message>
    <message>
        <source>Última corrida del guion</source>
        <translation>Last run of the script</translation>
    </message>
    <message>
        <source>Texto del guion</source>
        <translation>Text of the script</translation>
    </message>
    <message>
        <source>Desde:</source>
        <translation>Since:</translation>
    </message>
    <message>
        <source>Puntos:</source>
        <translation>Points:</translation>
    </message>
    <message>
        <source>Proyecto</source>
        <translation>Project</translation>
    </message>
    <message>
        <source>○ Guion sin correr</source>
        <translation>○ Script not run yet</translation>
    </message>
    <message>
        <source>● Guion OK</source>
        <translation>● Script OK</translation>
    </message>
    <message>
        <source>✖ Guion con error</source>
        <translation>✖ Script error</translation>
    </message>
    <message>
        <source>línea %1: %2</source>
        <translation>line %1: %2</translation>
    </message>
</context>
<context>
    <name>kv::CajaDeTraza</name>
    <message>
        <source>Pausa</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Deja quieto lo que se ve; la traza sigue</source>
        <translation>Holds still what is seen; the trace goes on</translation>
    </message>
    <message>
        <source>Guardar traza</source>
        <translation>Save trace</translation>
    </message>
    <message>
        <source>✖ sólo %1</source>
        <translation>✖ only %1</translation>
    </message>
    <message>
        <source>Vuelve a mostrar todo</source>
        <translation>Shows all again</translation>
    </message>
    <message>
        <source>Copiar</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>Copia lo elegido, o todo</source>
        <translation>Copies what is chosen, or all</translation>
    </message>
    <message>
        <source>Guardar…</source>
        <translation>Save…</translation>
    </message>
    <message>
        <source>Guarda la traza en un archivo</source>
        <translation>Saves the trace in a file</translation>
    </message>
</context>
<context>
    <name>kv::Candado</name>
    <message>
        <source>Orden a la planta</source>
        <translation>Order to the plant</translation>
    </message>
    <message>
        <source>¿%1?</source>
        <translation>%1?</translation>
    </message>
</context>
<context>
    <name>kv::Form1</name>
    <message>
        <source>Conexiones</source>
        <translation>Connections</translation>
    </message>
    <message>
        <source>Variables</source>
        <translation>Variables</translation>
    </message>
    <message>
        <source>Bloques</source>
        <translation>Blocks</translation>
    </message>
    <message>
        <source>&amp;Driver</source>
        <translation>&amp;Driver</translation>
    </message>
    <message>
        <source>&amp;Servidor de clientes</source>
        <translation>&amp;Client server</translation>
    </message>
    <message>
        <source>&amp;Guion…</source>
        <translation>&amp;Script…</translation>
    </message>
    <message>
        <source>&amp;Acerca de…</source>
        <translation>&amp;About…</translation>
    </message>
    <message>
        <source>&amp;Ocultar ventana</source>
        <translation>&amp;Hide window</translation>
    </message>
    <message>
        <source>Guardar &amp;evidencia…</source>
        <translation>Save &amp;evidence…</translation>
    </message>
    <message>
        <source>Guardar evidencia</source>
        <translation>Save evidence</translation>
    </message>
    <message>
        <source>La evidencia está en %1.</source>
        <translation>The evidence is in %1.</translation>
    </message>
    <message>
        <source>No se pudo hacer %1.</source>
        <translation>%1 could not be made.</translation>
    </message>
    <message>
        <source>&amp;Recargar configuración</source>
        <translation>&amp;Reload configuration</translation>
    </message>
    <message>
        <source>Sa&amp;lir…</source>
        <translation>E&amp;xit…</translation>
    </message>
    <message>
        <source>&amp;Ir a</source>
        <translation>&amp;Go to</translation>
    </message>
    <message>
        <source>&amp;Variables</source>
        <translation>&amp;Variables</translation>
    </message>
    <message>
        <source>&amp;Bloques</source>
        <translation>&amp;Blocks</translation>
    </message>
    <message>
        <source>&amp;Conexiones</source>
        <translation>&amp;Connections</translation>
    </message>
    <message>
        <source>&amp;Filtro</source>
        <translation>&amp;Filter</translation>
    </message>
    <message>
        <source>B&amp;uscar dirección</source>
        <translation>&amp;Search address</translation>
    </message>
    <message>
        <source>Lecturas y escrituras pedidas</source>
        <translation>Reads and writes asked for</translation>
    </message>
    <message>
        <source>Esta ventana no se cierra: Driver &gt; Ocultar ventana la esconde, Driver &gt; Salir termina el programa</source>
        <translation>This window does not close: Driver &gt; Hide window hides it, Driver &gt; Exit ends the program</translation>
    </message>
    <message>
        <source>0: al conectar y al forzar</source>
        <translation>0: on connecting and when forced</translation>
    </message>
    <message>
        <source>%1 (apagado)</source>
        <translation>%1 (off)</translation>
    </message>
    <message>
        <source>Dato&amp;s</source>
        <translation>L&amp;ists</translation>
    </message>
    <message>
        <source>&amp;Copiar filas</source>
        <translation>&amp;Copy rows</translation>
    </message>
    <message>
        <source>&amp;Exportar como CSV…</source>
        <translation>&amp;Export as CSV…</translation>
    </message>
    <message>
        <source>&amp;Ordenar por la columna</source>
        <translation>&amp;Sort by the column</translation>
    </message>
    <message>
        <source>Co&amp;lumnas</source>
        <translation>Co&amp;lumns</translation>
    </message>
    <message>
        <source>Valores en &amp;decimal</source>
        <translation>&amp;Decimal values</translation>
    </message>
    <message>
        <source>Valores en &amp;hexadecimal</source>
        <translation>&amp;Hexadecimal values</translation>
    </message>
    <message>
        <source>Valores en &amp;binario</source>
        <translation>&amp;Binary values</translation>
    </message>
    <message>
        <source>Vi&amp;gilancia</source>
        <translation>&amp;Monitoring</translation>
    </message>
    <message>
        <source>&amp;Sucesos</source>
        <translation>&amp;Events</translation>
    </message>
    <message>
        <source>&amp;Tendencias</source>
        <translation>&amp;Trends</translation>
    </message>
    <message>
        <source>Agregar a tendencias</source>
        <translation>Add to trends</translation>
    </message>
    <message>
        <source>Última lectura</source>
        <translation>Last reading</translation>
    </message>
    <message>
        <source>nunca</source>
        <translation>never</translation>
    </message>
    <message>
        <source>En este estado desde</source>
        <translation>In this state since</translation>
    </message>
    <message>
        <source>&amp;Resumen de estaciones</source>
        <translation>Overview of &amp;stations</translation>
    </message>
    <message>
        <source>&amp;Detalle de la conexión</source>
        <translation>&amp;Detail of the connection</translation>
    </message>
    <message>
        <source>&amp;Por qué</source>
        <translation>&amp;Why</translation>
    </message>
    <message>
        <source>Por qué está así</source>
        <translation>Why it is so</translation>
    </message>
    <message>
        <source>Detalle de la conexión</source>
        <translation>Detail of the connection</translation>
    </message>
    <message>
        <source> (viejo)</source>
        <translation> (old)</translation>
    </message>
    <message>
        <source>Descripción</source>
        <translation>Description</translation>
    </message>
    <message>
        <source>Lectura a pedido</source>
        <translation>Read on demand</translation>
    </message>
    <message>
        <source>%1 no contesta. Se dio de alta porque se la pidió, y se la sigue preguntando. ¿Olvidarla?</source>
        <translation>%1 does not answer. It was added because it was asked for, and is asked for again and again. Forget it?</translation>
    </message>
    <message>
        <source>Prender el bloque %1</source>
        <translation>Switch block %1 on</translation>
    </message>
    <message>
        <source>Apagar el bloque %1</source>
        <translation>Switch block %1 off</translation>
    </message>
    <message>
        <source>Cambiar el scan a %1 s</source>
        <translation>Change the scan to %1 s</translation>
    </message>
    <message>
        <source>Trazas: sólo este bloque</source>
        <translation>Traces: only this block</translation>
    </message>
    <message>
        <source>Trazas: sólo esta conexión</source>
        <translation>Traces: only this connection</translation>
    </message>
    <message>
        <source>Olvidar (dado de alta a pedido)</source>
        <translation>Forget (added on demand)</translation>
    </message>
    <message>
        <source>Está en la configuración: se apaga con su tilde.</source>
        <translation>It is in the configuration: its check box switches it off.</translation>
    </message>
    <message>
        <source>A&amp;yuda</source>
        <translation>&amp;Help</translation>
    </message>
    <message>
        <source>&amp;Manual del operador</source>
        <translation>Operator’s &amp;manual</translation>
    </message>
    <message>
        <source>Atencion</source>
        <translation>Attention</translation>
    </message>
    <message>
        <source>Desea Salir?</source>
        <translation>Do you want to leave?</translation>
    </message>
</context>
<context>
    <name>kv::FrmAbout</name>
    <message>
        <source>Icono del programa</source>
        <translation>Icon of the program</translation>
    </message>
    <message>
        <source>Versión %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>El driver entre el supervisor y las estaciones</source>
        <translation>The driver between the supervisor and the stations</translation>
    </message>
    <message>
        <source>Driver de comunicaciones entre el supervisor y las estaciones KV2200.</source>
        <translation>Communications driver between the supervisor and the KV2200 stations.</translation>
    </message>
    <message>
        <source>&amp;Cerrar</source>
        <translation>&amp;Close</translation>
    </message>
</context>
<context>
    <name>kv::FrmEscritura</name>
    <message>
        <source>Escritura manual</source>
        <translation>Manual write</translation>
    </message>
    <message>
        <source>P&amp;uerto</source>
        <translation>P&amp;ort</translation>
    </message>
    <message>
        <source>&amp;PLC</source>
        <translation>&amp;PLC</translation>
    </message>
    <message>
        <source>&amp;Dirección</source>
        <translation>&amp;Address</translation>
    </message>
    <message>
        <source>&amp;Valor</source>
        <translation>&amp;Value</translation>
    </message>
    <message>
        <source>Bit %1</source>
        <translation>Bit %1</translation>
    </message>
    <message>
        <source>Bit %1, vale %2</source>
        <translation>Bit %1, worth %2</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>&amp;Cancelar</source>
        <translation>&amp;Cancel</translation>
    </message>
    <message>
        <source>&amp;Salir</source>
        <translation>E&amp;xit</translation>
    </message>
    <message>
        <source>Escritura manual: %1</source>
        <translation>Manual write: %1</translation>
    </message>
    <message>
        <source>Ahora</source>
        <translation>Now</translation>
    </message>
    <message>
        <source>no se lee</source>
        <translation>not read</translation>
    </message>
    <message>
        <source>Un bit es 0 o 1</source>
        <translation>A bit is 0 or 1</translation>
    </message>
    <message>
        <source>No entra: el máximo es 65535</source>
        <translation>Does not fit: 65535 at most</translation>
    </message>
    <message>
        <source>Escribir %1 en %2</source>
        <translation>Write %1 to %2</translation>
    </message>
    <message>
        <source>Binario</source>
        <translation>Binary</translation>
    </message>
    <message>
        <source>Error de numero de Puerto</source>
        <translation>The port number is wrong</translation>
    </message>
    <message>
        <source>Error de numero de PLC</source>
        <translation>The PLC number is wrong</translation>
    </message>
    <message>
        <source>Error de numero de Direccion</source>
        <translation>The address is wrong</translation>
    </message>
    <message>
        <source>Error de valor numerico</source>
        <translation>The value is wrong</translation>
    </message>
</context>
<context>
    <name>kv::FrmPuertos</name>
    <message>
        <source>Puertos</source>
        <translation>Ports</translation>
    </message>
    <message>
        <source>Lista de puertos</source>
        <translation>List of ports</translation>
    </message>
    <message>
        <source>Puerto</source>
        <translation>Port</translation>
    </message>
    <message>
        <source>Agregar</source>
        <translation>Add</translation>
    </message>
    <message>
        <source>Modificar</source>
        <translation>Change</translation>
    </message>
    <message>
        <source>Quitar</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>Tiempo de espera (s)</source>
        <translation>Time-out (s)</translation>
    </message>
    <message>
        <source>Scan por defecto (s)</source>
        <translation>Default scan (s)</translation>
    </message>
    <message>
        <source>Reintentos</source>
        <translation>Retries</translation>
    </message>
    <message>
        <source>Descanso (s)</source>
        <translation>Rest (s)</translation>
    </message>
    <message>
        <source>Bloques</source>
        <translation>Blocks</translation>
    </message>
    <message>
        <source>Los puertos se cambian en la configuración</source>
        <translation>Ports are changed in the configuration</translation>
    </message>
    <message>
        <source>&amp;Salir</source>
        <translation>E&amp;xit</translation>
    </message>
</context>
<context>
    <name>kv::FrmScript</name>
    <message>
        <source>línea %1, columna %2: %3</source>
        <translation>line %1, column %2: %3</translation>
    </message>
    <message>
        <source>&amp;Guardar</source>
        <translation>&amp;Save</translation>
    </message>
    <message>
        <source>Guion: %1[*]</source>
        <translation>Script: %1[*]</translation>
    </message>
    <message>
        <source>Texto del guion</source>
        <translation>Text of the script</translation>
    </message>
    <message>
        <source>Línea %1, columna %2</source>
        <translation>Line %1, column %2</translation>
    </message>
    <message>
        <source>Gui&amp;on</source>
        <translation>S&amp;cript</translation>
    </message>
    <message>
        <source>&amp;Comprobar</source>
        <translation>&amp;Check</translation>
    </message>
    <message>
        <source>Ce&amp;rrar</source>
        <translation>C&amp;lose</translation>
    </message>
    <message>
        <source>&amp;Edición</source>
        <translation>&amp;Edit</translation>
    </message>
    <message>
        <source>&amp;Deshacer</source>
        <translation>&amp;Undo</translation>
    </message>
    <message>
        <source>&amp;Rehacer</source>
        <translation>&amp;Redo</translation>
    </message>
    <message>
        <source>&amp;Buscar...</source>
        <translation>&amp;Find...</translation>
    </message>
    <message>
        <source>Buscar &amp;siguiente</source>
        <translation>Find &amp;next</translation>
    </message>
    <message>
        <source>Buscar &amp;anterior</source>
        <translation>Find &amp;previous</translation>
    </message>
    <message>
        <source>Ree&amp;mplazar...</source>
        <translation>&amp;Replace...</translation>
    </message>
    <message>
        <source>&amp;Ir a la línea...</source>
        <translation>&amp;Go to line...</translation>
    </message>
    <message>
        <source>&amp;Ver</source>
        <translation>&amp;View</translation>
    </message>
    <message>
        <source>Letra más &amp;grande</source>
        <translation>&amp;Larger type</translation>
    </message>
    <message>
        <source>Letra más &amp;chica</source>
        <translation>&amp;Smaller type</translation>
    </message>
    <message>
        <source>⚠ Otro programa cambió el archivo.</source>
        <translation>⚠ Another program changed the file.</translation>
    </message>
    <message>
        <source>&amp;Leer de nuevo (se pierde lo de aquí)</source>
        <translation>&amp;Read again (what is here is lost)</translation>
    </message>
    <message>
        <source>Co&amp;nservar lo de aquí</source>
        <translation>&amp;Keep what is here</translation>
    </message>
    <message>
        <source>&amp;Cerrar sin guardar</source>
        <translation>&amp;Close without saving</translation>
    </message>
    <message>
        <source>✖ %1; no se lo puede cambiar desde aquí.</source>
        <translation>✖ %1; it cannot be changed from here.</translation>
    </message>
    <message>
        <source>✖ No se puede leer el archivo; no se lo puede cambiar desde aquí.</source>
        <translation>✖ The file cannot be read; it cannot be changed from here.</translation>
    </message>
    <message>
        <source>La configuración no tiene lugar para un guion.</source>
        <translation>The configuration has no place for a script.</translation>
    </message>
    <message>
        <source>Otro programa cambió el archivo desde que se abrió. ¿Guardar encima?</source>
        <translation>Another program changed the file since it was opened. Overwrite it?</translation>
    </message>
    <message>
        <source>&amp;Guardar encima</source>
        <translation>&amp;Overwrite</translation>
    </message>
    <message>
        <source>&amp;No guardar</source>
        <translation>&amp;Don&apos;t save</translation>
    </message>
    <message>
        <source>Guardado.</source>
        <translation>Saved.</translation>
    </message>
    <message>
        <source>No se pudo escribir el archivo. No se guardó nada.</source>
        <translation>The file could not be written. Nothing was saved.</translation>
    </message>
    <message>
        <source>%1. No se guardó nada.</source>
        <translation>%1. Nothing was saved.</translation>
    </message>
    <message>
        <source>El archivo no puede guardar el carácter &quot;%1&quot; de la línea %2. No se guardó nada.</source>
        <translation>The file cannot hold the character &quot;%1&quot; of line %2. Nothing was saved.</translation>
    </message>
    <message>
        <source>Sin errores.</source>
        <translation>No errors.</translation>
    </message>
    <message>
        <source>No compila: %1</source>
        <translation>Does not compile: %1</translation>
    </message>
    <message>
        <source>Última corrida: %1</source>
        <translation>Last run: %1</translation>
    </message>
    <message>
        <source>Ir a la línea</source>
        <translation>Go to line</translation>
    </message>
    <message>
        <source>Línea (1 a %1):</source>
        <translation>Line (1 to %1):</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancelar</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>El guion tiene cambios sin guardar.</source>
        <translation>The script has changes that are not saved.</translation>
    </message>
    <message>
        <source>&amp;Seguir editando</source>
        <translation>&amp;Keep editing</translation>
    </message>
    <message>
        <source>Ir al &amp;error</source>
        <translation>Go to the &amp;error</translation>
    </message>
    <message>
        <source>&amp;Completar</source>
        <translation>Co&amp;mplete</translation>
    </message>
    <message>
        <source>Lo que tardó la última corrida del guion, y la memoria que usa</source>
        <translation>What the script&apos;s last run took, and the memory that it uses</translation>
    </message>
    <message>
        <source>Avisos: %1. El primero, en la %2</source>
        <translation>Warnings: %1. The first one: %2</translation>
    </message>
    <message>
        <source>Corrida: %1 ms, %2 KiB</source>
        <translation>Run: %1 ms, %2 KiB</translation>
    </message>
    <message>
        <source>No hay errores ni avisos marcados.</source>
        <translation>No errors or warnings are marked.</translation>
    </message>
    <message>
        <source>✔ Guardado</source>
        <translation>✔ Saved</translation>
    </message>
</context>
<context>
    <name>kv::LienzoDeTendencias</name>
    <message>
        <source>Elija filas en la lista de variables y, en su menú (botón derecho), &quot;Agregar a tendencias&quot;.</source>
        <translation>Choose rows in the list of variables and, in their menu (right button), &quot;Add to trends&quot;.</translation>
    </message>
    <message>
        <source>sin datos</source>
        <translation>no data</translation>
    </message>
</context>
<context>
    <name>kv::Mensajero</name>
    <message>
        <source>Aceptar</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>&amp;Sí</source>
        <translation>&amp;Yes</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;No</translation>
    </message>
    <message>
        <source>Cancelar</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>kv::ModeloDeEstaciones</name>
    <message>
        <source>Estación</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>Última respuesta</source>
        <translation>Last answer</translation>
    </message>
    <message>
        <source>Tiempo de respuesta</source>
        <translation>Response time</translation>
    </message>
    <message>
        <source>Pedidos</source>
        <translation>Requests</translation>
    </message>
    <message>
        <source>Vencidos</source>
        <translation>Timed out</translation>
    </message>
    <message>
        <source>Reintentos</source>
        <translation>Retries</translation>
    </message>
    <message>
        <source>Descartes</source>
        <translation>Discarded</translation>
    </message>
</context>
<context>
    <name>kv::ModeloDeSucesos</name>
    <message>
        <source>nota</source>
        <translation>note</translation>
    </message>
    <message>
        <source>aviso</source>
        <translation>warning</translation>
    </message>
    <message>
        <source>alarma</source>
        <translation>alarm</translation>
    </message>
    <message>
        <source>sí</source>
        <translation>yes</translation>
    </message>
    <message>
        <source>Hora</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>Importa</source>
        <translation>Severity</translation>
    </message>
    <message>
        <source>Dónde</source>
        <translation>Where</translation>
    </message>
    <message>
        <source>Qué pasó</source>
        <translation>What happened</translation>
    </message>
    <message>
        <source>Veces</source>
        <translation>Times</translation>
    </message>
    <message>
        <source>Reconocido</source>
        <translation>Acknowledged</translation>
    </message>
    <message>
        <source>%1, la última %2</source>
        <translation>%1, the last %2</translation>
    </message>
</context>
<context>
    <name>kv::PanelDeOrdenes</name>
    <message>
        <source>Dirección que se busca</source>
        <translation>Address to search</translation>
    </message>
    <message>
        <source>Dirección de prueba</source>
        <translation>Test address</translation>
    </message>
    <message>
        <source>Valor de prueba</source>
        <translation>Test value</translation>
    </message>
    <message>
        <source>Nivel</source>
        <translation>Level</translation>
    </message>
    <message>
        <source>Cantidad de lecturas</source>
        <translation>Number of reads</translation>
    </message>
    <message>
        <source>Buscar dirección exacta</source>
        <translation>Search exact address</translation>
    </message>
    <message>
        <source>Resultado de la búsqueda</source>
        <translation>Result of the search</translation>
    </message>
    <message>
        <source>&amp;Buscar</source>
        <translation>S&amp;earch</translation>
    </message>
    <message>
        <source>Di&amp;rección:</source>
        <translation>Add&amp;ress:</translation>
    </message>
    <message>
        <source>&amp;Valor:</source>
        <translation>&amp;Value:</translation>
    </message>
    <message>
        <source>&amp;Forzar lectura</source>
        <translation>&amp;Force read</translation>
    </message>
    <message>
        <source>&amp;Escribir valor</source>
        <translation>&amp;Write value</translation>
    </message>
    <message>
        <source>Escribir &amp;otra dirección</source>
        <translation>Write an&amp;other address</translation>
    </message>
    <message>
        <source>Escribir otro va&amp;lor</source>
        <translation>Write another val&amp;ue</translation>
    </message>
    <message>
        <source>Forzar un nivel</source>
        <translation>Force a level</translation>
    </message>
    <message>
        <source>&amp;Nivel:</source>
        <translation>&amp;Level:</translation>
    </message>
    <message>
        <source>Ve&amp;ces:</source>
        <translation>&amp;Times:</translation>
    </message>
    <message>
        <source>Lecturas de cada bloque, que después queda como estaba; 0 enciende el nivel y -1 lo apaga</source>
        <translation>Reads of each block, which is then left as it was; 0 switches the level on and -1 off</translation>
    </message>
    <message>
        <source>Forzar &amp;por nivel</source>
        <translation>Force &amp;by level</translation>
    </message>
    <message>
        <source>Escrituras de prueba</source>
        <translation>Test writes</translation>
    </message>
    <message>
        <source>Dirección</source>
        <translation>Address</translation>
    </message>
    <message>
        <source>Valor</source>
        <translation>Value</translation>
    </message>
    <message>
        <source>Dirección de la prueba %1</source>
        <translation>Address of test %1</translation>
    </message>
    <message>
        <source>Valor de la prueba %1</source>
        <translation>Value of test %1</translation>
    </message>
    <message>
        <source>Enviar tod&amp;as</source>
        <translation>Send &amp;all</translation>
    </message>
    <message>
        <source>Forzar la lectura de %1</source>
        <translation>Force a read of %1</translation>
    </message>
    <message>
        <source>Escribir %1 en %2</source>
        <translation>Write %1 to %2</translation>
    </message>
    <message>
        <source>Forzar el nivel %1, veces: %2</source>
        <translation>Force level %1, times: %2</translation>
    </message>
    <message>
        <source>Escribir %1 en la dirección que sigue a %2</source>
        <translation>Write %1 to the address after %2</translation>
    </message>
    <message>
        <source>Escribir otro valor en %1</source>
        <translation>Write another value to %1</translation>
    </message>
    <message>
        <source>Enviar todas las escrituras de prueba</source>
        <translation>Send all test writes</translation>
    </message>
</context>
<context>
    <name>kv::PanelDeTrazas</name>
    <message>
        <source>Tramas enviadas y recibidas</source>
        <translation>Frames sent and received</translation>
    </message>
    <message>
        <source>Tramas</source>
        <translation>Frames</translation>
    </message>
    <message>
        <source>Tramas descartadas</source>
        <translation>Discarded frames</translation>
    </message>
    <message>
        <source>Descartadas</source>
        <translation>Discarded</translation>
    </message>
    <message>
        <source>Temporizador de un bloque</source>
        <translation>Timer of a block</translation>
    </message>
    <message>
        <source>Por bloque</source>
        <translation>By block</translation>
    </message>
    <message>
        <source>Tiempos de una conexión</source>
        <translation>Times of a connection</translation>
    </message>
    <message>
        <source>Por conexión</source>
        <translation>By connection</translation>
    </message>
    <message>
        <source>Pasos de las escrituras</source>
        <translation>Steps of writes</translation>
    </message>
    <message>
        <source>Escrituras</source>
        <translation>Writes</translation>
    </message>
</context>
<context>
    <name>kv::Sucesos</name>
    <message>
        <source>Enlace arriba</source>
        <translation>Link up</translation>
    </message>
    <message>
        <source>Enlace caido</source>
        <translation>Link lost</translation>
    </message>
    <message>
        <source>Se corta el enlace: lo que no llego ya no sale</source>
        <translation>The link is cut: what has not arrived does not leave any more</translation>
    </message>
    <message>
        <source>La linea no calla: se cierra el enlace</source>
        <translation>The line does not fall silent: the link is closed</translation>
    </message>
    <message>
        <source>La estacion no contesta</source>
        <translation>The station does not answer</translation>
    </message>
    <message>
        <source>La estacion contesta de nuevo</source>
        <translation>The station answers again</translation>
    </message>
    <message>
        <source>El bloque descansa: no hubo respuesta</source>
        <translation>The block rests: there was no answer</translation>
    </message>
    <message>
        <source>El bloque se pregunta de nuevo</source>
        <translation>The block is asked for again</translation>
    </message>
    <message>
        <source>El enlace no levanta</source>
        <translation>The link does not come up</translation>
    </message>
    <message>
        <source>Bloque prendido</source>
        <translation>Block switched on</translation>
    </message>
    <message>
        <source>Bloque apagado</source>
        <translation>Block switched off</translation>
    </message>
    <message>
        <source>El guion corre de nuevo</source>
        <translation>The script runs again</translation>
    </message>
    <message>
        <source>No se puede forzar: el bloque no se puede polear</source>
        <translation>Cannot be forced: the block cannot be polled</translation>
    </message>
    <message>
        <source>No se puede forzar: sin conexion con la estacion</source>
        <translation>Cannot be forced: no connection with the station</translation>
    </message>
    <message>
        <source>Falla del guion: %1</source>
        <translation>Script error: %1</translation>
    </message>
    <message>
        <source>El guion se detiene: %1</source>
        <translation>The script stops: %1</translation>
    </message>
    <message>
        <source>Entra el cliente %1</source>
        <translation>The client %1 comes in</translation>
    </message>
    <message>
        <source>Sale el cliente %1</source>
        <translation>The client %1 leaves</translation>
    </message>
    <message>
        <source>Escritura de %1 = %2: %3</source>
        <translation>Write of %1 = %2: %3</translation>
    </message>
    <message>
        <source>Escritura rechazada: %1 = %2: %3</source>
        <translation>Write refused: %1 = %2: %3</translation>
    </message>
    <message>
        <source>No existe ese puerto o PLC: %1</source>
        <translation>There is no such port or PLC: %1</translation>
    </message>
    <message>
        <source>Bloque dado de alta a pedido: %1</source>
        <translation>Block made on request: %1</translation>
    </message>
    <message>
        <source>No se pudo dar de alta el bloque: %1</source>
        <translation>The block could not be made: %1</translation>
    </message>
</context>
<context>
    <name>kv::TablaDeLista</name>
    <message>
        <source>Filtrar…</source>
        <translation>Filter…</translation>
    </message>
    <message>
        <source>Filtro de %1</source>
        <translation>Filter of %1</translation>
    </message>
    <message>
        <source>Muestra las filas que tengan todas las palabras escritas; con ^ delante, las que empiecen así</source>
        <translation>Shows the rows that have all words; with ^ in front, those that begin so</translation>
    </message>
    <message>
        <source>Copiar (Ctrl+C)</source>
        <translation>Copy (Ctrl+C)</translation>
    </message>
    <message>
        <source>Exportar como CSV…</source>
        <translation>Export as CSV…</translation>
    </message>
    <message>
        <source>⚠ filtrada: %1 de %2</source>
        <translation>⚠ filtered: %1 of %2</translation>
    </message>
    <message>
        <source>Exportar %1</source>
        <translation>Export %1</translation>
    </message>
    <message>
        <source>(notas)</source>
        <translation>(notes)</translation>
    </message>
</context>
<context>
    <name>kv::Titulos</name>
    <message>
        <source>Puerto</source>
        <translation>Port</translation>
    </message>
    <message>
        <source>IP:PuertoTCP</source>
        <translation>IP:TCP port</translation>
    </message>
    <message>
        <source>Estado</source>
        <translation>State</translation>
    </message>
    <message>
        <source>[PLC X - Indice Y]</source>
        <translation>[PLC X - Index Y]</translation>
    </message>
    <message>
        <source>Base de Tiempo Conexion</source>
        <translation>Connection time base</translation>
    </message>
    <message>
        <source>Cant.Intervalos para solicitar</source>
        <translation>Intervals between requests</translation>
    </message>
    <message>
        <source>Cant.de Solicitudes</source>
        <translation>Requests</translation>
    </message>
    <message>
        <source>Tiempo Fuera</source>
        <translation>Time-out</translation>
    </message>
    <message>
        <source>Direccion</source>
        <translation>Address</translation>
    </message>
    <message>
        <source>Valor</source>
        <translation>Value</translation>
    </message>
    <message>
        <source>Fecha Hora</source>
        <translation>Date and time</translation>
    </message>
    <message>
        <source>Nombre en Script</source>
        <translation>Name in script</translation>
    </message>
    <message>
        <source>[Direccion]</source>
        <translation>[Address]</translation>
    </message>
    <message>
        <source>[Nivel]</source>
        <translation>[Level]</translation>
    </message>
    <message>
        <source>[Tiempo de Scan(s)]</source>
        <translation>[Scan time (s)]</translation>
    </message>
    <message>
        <source>Habilitado por respuestas OK. [Si/No]</source>
        <translation>Enabled by OK answers [yes/no]</translation>
    </message>
</context>
<context>
    <name>kv::VentanaDeConexion</name>
    <message>
        <source>última %1,  mediana %2,  peor %3</source>
        <translation>last %1,  median %2,  worst %3</translation>
    </message>
    <message>
        <source>nunca</source>
        <translation>never</translation>
    </message>
    <message>
        <source>hace %1</source>
        <translation>%1 ago</translation>
    </message>
    <message>
        <source>Detalle de la conexión</source>
        <translation>Detail of the connection</translation>
    </message>
    <message>
        <source>Última respuesta:</source>
        <translation>Last answer:</translation>
    </message>
    <message>
        <source>Tiempo de respuesta:</source>
        <translation>Response time:</translation>
    </message>
    <message>
        <source>Pedidos y respuestas:</source>
        <translation>Requests and answers:</translation>
    </message>
    <message>
        <source>Sin respuesta a tiempo:</source>
        <translation>Not answered in time:</translation>
    </message>
    <message>
        <source>Descartado:</source>
        <translation>Discarded:</translation>
    </message>
    <message>
        <source>Enlaces perdidos:</source>
        <translation>Links lost:</translation>
    </message>
    <message>
        <source>Scans:</source>
        <translation>Scans:</translation>
    </message>
    <message>
        <source>La línea, últimos minutos:</source>
        <translation>The line, latest minutes:</translation>
    </message>
    <message>
        <source>Estaciones de la conexión</source>
        <translation>Stations of the connection</translation>
    </message>
    <message>
        <source>ningún bloque se lee</source>
        <translation>no block is read</translation>
    </message>
    <message>
        <source>se cumplen todos (piden el %1 % de la línea)</source>
        <translation>all are kept (they want %1 % of the line)</translation>
    </message>
    <message>
        <source>⚠ %1 no se pueden cumplir (piden el %2 % de la línea); lo mejor posible es %3 s</source>
        <translation>⚠ %1 cannot be kept (they want %2 % of the line); the best possible is %3 s</translation>
    </message>
    <message>
        <source>Elija una conexión en su lista</source>
        <translation>Choose a connection in its list</translation>
    </message>
    <message>
        <source>%1 pedidos, %2 respuestas</source>
        <translation>%1 requests, %2 answers</translation>
    </message>
    <message>
        <source>%1, con %2 reintentos</source>
        <translation>%1, with %2 retries</translation>
    </message>
    <message>
        <source>%1 descartes de lo que no es respuesta (%2 bytes), %3 respuestas que no se esperaban o con otro valor, %4 dudosas</source>
        <translation>%1 times what is no answer (%2 bytes), %3 answers not waited for or with another value, %4 in doubt</translation>
    </message>
</context>
<context>
    <name>kv::VentanaDeManual</name>
    <message>
        <source>Manual del operador</source>
        <translation>Operator’s manual</translation>
    </message>
</context>
<context>
    <name>kv::VentanaDeResumen</name>
    <message>
        <source>OK %1   viejas %2   BAD %3</source>
        <translation>OK %1   old %2   BAD %3</translation>
    </message>
    <message>
        <source>sin respuesta</source>
        <translation>no answer</translation>
    </message>
    <message>
        <source>sin respuesta desde %1</source>
        <translation>no answer since %1</translation>
    </message>
    <message>
        <source>&amp;Sólo con problemas</source>
        <translation>&amp;Only with problems</translation>
    </message>
    <message>
        <source>Resumen de estaciones</source>
        <translation>Overview of stations</translation>
    </message>
    <message>
        <source>%1 estaciones, %2 sin respuesta; variables: %3 OK, %4 viejas, %5 BAD</source>
        <translation>%1 stations, %2 silent; variables: %3 OK, %4 old, %5 BAD</translation>
    </message>
</context>
<context>
    <name>kv::VentanaDeSucesos</name>
    <message>
        <source>&amp;Sólo avisos y alarmas</source>
        <translation>&amp;Warnings and alarms only</translation>
    </message>
    <message>
        <source>Sólo sin &amp;reconocer</source>
        <translation>&amp;Unacknowledged only</translation>
    </message>
    <message>
        <source>Sucesos</source>
        <translation>Events</translation>
    </message>
    <message>
        <source>Filtrar…</source>
        <translation>Filter…</translation>
    </message>
    <message>
        <source>Filtro de los sucesos</source>
        <translation>Filter of the events</translation>
    </message>
    <message>
        <source>Re&amp;conocer lo elegido</source>
        <translation>&amp;Acknowledge the chosen</translation>
    </message>
    <message>
        <source>Reconocer &amp;todo</source>
        <translation>Acknowledge a&amp;ll</translation>
    </message>
    <message>
        <source>&amp;Exportar como CSV…</source>
        <translation>&amp;Export as CSV…</translation>
    </message>
    <message>
        <source>Cerrar</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>Exportar los sucesos</source>
        <translation>Export the events</translation>
    </message>
</context>
<context>
    <name>kv::VentanaDeTendencias</name>
    <message>
        <source>&amp;Pausa</source>
        <translation>&amp;Pause</translation>
    </message>
    <message>
        <source>Tendencias</source>
        <translation>Trends</translation>
    </message>
    <message>
        <source>&amp;Últimos:</source>
        <translation>&amp;Last:</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 h</source>
        <translation>%1 h</translation>
    </message>
    <message>
        <source>&amp;Quitar</source>
        <translation>&amp;Remove</translation>
    </message>
    <message>
        <source>Guardar &amp;imagen…</source>
        <translation>Save &amp;picture…</translation>
    </message>
    <message>
        <source>Guardar &amp;CSV…</source>
        <translation>Save &amp;CSV…</translation>
    </message>
    <message>
        <source>Guardar la imagen</source>
        <translation>Save the picture</translation>
    </message>
    <message>
        <source>Guardar los valores</source>
        <translation>Save the values</translation>
    </message>
</context>
<context>
    <name>kv::VentanaPorQue</name>
    <message>
        <source>Por qué</source>
        <translation>Why</translation>
    </message>
    <message>
        <source>La variable</source>
        <translation>The variable</translation>
    </message>
    <message>
        <source>Su bloque</source>
        <translation>Its block</translation>
    </message>
    <message>
        <source>Su estación</source>
        <translation>Its station</translation>
    </message>
    <message>
        <source>Su conexión</source>
        <translation>Its connection</translation>
    </message>
    <message>
        <source>Ver la &amp;conexión</source>
        <translation>See the &amp;connection</translation>
    </message>
    <message>
        <source>C&amp;opiar</source>
        <translation>C&amp;opy</translation>
    </message>
    <message>
        <source>Cerrar</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>Elija una fila en las listas de variables o de bloques</source>
        <translation>Choose a row in the lists of variables or blocks</translation>
    </message>
</context>
<context>
    <name>kv::VentanaServidor</name>
    <message>
        <source>Hacia el cliente (mientras se ve esta ventana)</source>
        <translation>To the client (while this window is shown)</translation>
    </message>
    <message>
        <source>Del cliente</source>
        <translation>From the client</translation>
    </message>
    <message>
        <source>Servidor de clientes</source>
        <translation>Client server</translation>
    </message>
    <message>
        <source>&amp;Ocultar</source>
        <translation>&amp;Hide</translation>
    </message>
    <message>
        <source>Todavía no vino ningún cliente</source>
        <translation>No client has come yet</translation>
    </message>
    <message>
        <source>Nadie, desde %1</source>
        <translation>Nobody since %1</translation>
    </message>
    <message>
        <source>%1, desde %2: </source>
        <translation>%1, since %2: </translation>
    </message>
    <message>
        <source>identificado</source>
        <translation>logged in</translation>
    </message>
    <message>
        <source>sin identificarse</source>
        <translation>not logged in</translation>
    </message>
</context>
<context>
    <name>kv::Vigilancia</name>
    <message>
        <source>Entran %1 variables; quite alguna antes.</source>
        <translation>There is room for %1 variables; remove one first.</translation>
    </message>
    <message>
        <source>Atencion</source>
        <translation>Attention</translation>
    </message>
</context>
</TS>
