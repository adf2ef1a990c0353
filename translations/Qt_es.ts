<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-License-Identifier: Apache-2.0 -->
<TS version="2.1" language="es_AR" sourcelanguage="en">
<context>
    <name>QFileDialog</name>
    <message>
        <source>Alt+Left</source>
        <translation>Alt+Left</translation>
    </message>
    <message>
        <source>Alt+Right</source>
        <translation>Alt+Right</translation>
    </message>
    <message>
        <source>Alt+Up</source>
        <translation>Alt+Up</translation>
    </message>
    <message>
        <source>Look in:</source>
        <translation>Buscar en:</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Atrás</translation>
    </message>
    <message>
        <source>Go back</source>
        <translation>Volver a la carpeta anterior</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Adelante</translation>
    </message>
    <message>
        <source>Go forward</source>
        <translation>Ir a la carpeta siguiente</translation>
    </message>
    <message>
        <source>Parent Directory</source>
        <translation>Carpeta de arriba</translation>
    </message>
    <message>
        <source>Go to the parent directory</source>
        <translation>Ir a la carpeta de arriba</translation>
    </message>
    <message>
        <source>Create New Folder</source>
        <translation>Crear carpeta</translation>
    </message>
    <message>
        <source>Create a New Folder</source>
        <translation>Crear una carpeta</translation>
    </message>
    <message>
        <source>List View</source>
        <translation>Lista</translation>
    </message>
    <message>
        <source>Change to list view mode</source>
        <translation>Ver como lista</translation>
    </message>
    <message>
        <source>Detail View</source>
        <translation>Detalles</translation>
    </message>
    <message>
        <source>Change to detail view mode</source>
        <translation>Ver con detalles</translation>
    </message>
    <message>
        <source>Sidebar</source>
        <translation>Lugares</translation>
    </message>
    <message>
        <source>List of places and bookmarks</source>
        <translation>Lista de lugares</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Archivos</translation>
    </message>
    <message>
        <source>Files of type:</source>
        <translation>Tipo de archivo:</translation>
    </message>
    <message>
        <source>Find Directory</source>
        <translation>Buscar carpeta</translation>
    </message>
    <message>
        <source>Directory:</source>
        <translation>Carpeta:</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>Guardar como</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Guardar</translation>
    </message>
    <message>
        <source>File &amp;name:</source>
        <translation>&amp;Nombre:</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>&amp;Abrir</translation>
    </message>
    <message>
        <source>&amp;Choose</source>
        <translation>&amp;Elegir</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Guardar</translation>
    </message>
    <message>
        <source>All Files (*)</source>
        <translation>Todos los archivos (*)</translation>
    </message>
    <message>
        <source>Show </source>
        <translation>Mostrar </translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>Cambiar &amp;nombre</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Borrar</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Borrar</translation>
    </message>
    <message>
        <source>Show &amp;hidden files</source>
        <translation>Mostrar los &amp;ocultos</translation>
    </message>
    <message>
        <source>&amp;New Folder</source>
        <translation>&amp;Carpeta nueva</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>Carpeta nueva</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Quitar</translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>%1 ya existe.
¿Reemplazarlo?</translation>
    </message>
    <message>
        <source>%1
File not found.
Please verify the correct file name was given.</source>
        <translation>%1
No existe ese archivo.
Revise el nombre.</translation>
    </message>
    <message>
        <source>%1
Directory not found.
Please verify the correct directory name was given.</source>
        <translation>%1
No existe esa carpeta.
Revise el nombre.</translation>
    </message>
    <message>
        <source>&#x27;%1&#x27; is write protected.
Do you want to delete it anyway?</source>
        <translation>&#x27;%1&#x27; está protegido contra escritura.
¿Borrarlo igual?</translation>
    </message>
    <message>
        <source>Are you sure you want to delete &#x27;%1&#x27;?</source>
        <translation>¿Borrar &#x27;%1&#x27;?</translation>
    </message>
    <message>
        <source>Could not delete directory.</source>
        <translation>No se pudo borrar la carpeta.</translation>
    </message>
    <message>
        <source>Recent Places</source>
        <translation>Lugares recientes</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Desconocido</translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation>Equipo</translation>
    </message>
    <message>
        <source>Drive</source>
        <translation>Unidad</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Archivo</translation>
    </message>
    <message>
        <source>File Folder</source>
        <translation>Carpeta</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Carpeta</translation>
    </message>
</context>
<context>
    <name>QFileSystemModel</name>
    <message>
        <source>Name</source>
        <translation>Nombre</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Tamaño</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Tipo</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Tipo</translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation>Modificado</translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation>Equipo</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Equipo</translation>
    </message>
    <message>
        <source>Invalid filename</source>
        <translation>Nombre no válido</translation>
    </message>
    <message>
        <source>&lt;b&gt;The name &quot;%1&quot; cannot be used.&lt;/b&gt;&lt;p&gt;Try using another name, with fewer characters or no punctuation marks.</source>
        <translation>&lt;b&gt;El nombre &quot;%1&quot; no se puede usar.&lt;/b&gt;&lt;p&gt;Pruebe con otro, más corto o sin signos de puntuación.</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 bytes</translation>
    </message>
    <message>
        <source>%1 byte(s)</source>
        <translation>%1 bytes</translation>
    </message>
</context>
<context>
    <name>QAbstractFileIconProvider</name>
    <message>
        <source>Drive</source>
        <translation>Unidad</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Archivo</translation>
    </message>
    <message>
        <source>%1 File</source>
        <translation>Archivo %1</translation>
    </message>
    <message>
        <source>File Folder</source>
        <translation>Carpeta</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Carpeta</translation>
    </message>
    <message>
        <source>Alias</source>
        <translation>Alias</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Acceso directo</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Desconocido</translation>
    </message>
</context>
<context>
    <name>QPlatformTheme</name>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Guardar</translation>
    </message>
    <message>
        <source>Save All</source>
        <translation>Guardar todo</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Sí</translation>
    </message>
    <message>
        <source>Yes to &amp;All</source>
        <translation>Sí a &amp;todo</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;No</translation>
    </message>
    <message>
        <source>N&amp;o to All</source>
        <translation>N&amp;o a todo</translation>
    </message>
    <message>
        <source>Abort</source>
        <translation>Abandonar</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Reintentar</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>Pasar por alto</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Descartar</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Ayuda</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Aplicar</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Restablecer</translation>
    </message>
    <message>
        <source>Restore Defaults</source>
        <translation>Valores de fábrica</translation>
    </message>
</context>
<context>
    <name>QDialogButtonBox</name>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Deshacer</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Rehacer</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Cor&amp;tar</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copiar</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Pegar</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Borrar</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Elegir todo</translation>
    </message>
    <message>
        <source>Clear text</source>
        <translation>Borrar el texto</translation>
    </message>
</context>
<context>
    <name>QWidgetTextControl</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Deshacer</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Rehacer</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Cor&amp;tar</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copiar</translation>
    </message>
    <message>
        <source>Copy &amp;Link Location</source>
        <translation>Copiar el en&amp;lace</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Pegar</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Borrar</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Elegir todo</translation>
    </message>
</context>
<context>
    <name>QAbstractSpinBox</name>
    <message>
        <source>&amp;Select All</source>
        <translation>&amp;Elegir todo</translation>
    </message>
    <message>
        <source>&amp;Step up</source>
        <translation>&amp;Subir</translation>
    </message>
    <message>
        <source>Step &amp;down</source>
        <translation>&amp;Bajar</translation>
    </message>
</context>
<context>
    <name>QScrollBar</name>
    <message>
        <source>Scroll here</source>
        <translation>Ir hasta aquí</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>Arriba del todo</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>Abajo del todo</translation>
    </message>
    <message>
        <source>Left edge</source>
        <translation>Borde izquierdo</translation>
    </message>
    <message>
        <source>Right edge</source>
        <translation>Borde derecho</translation>
    </message>
    <message>
        <source>Page up</source>
        <translation>Página anterior</translation>
    </message>
    <message>
        <source>Page down</source>
        <translation>Página siguiente</translation>
    </message>
    <message>
        <source>Page left</source>
        <translation>Página a la izquierda</translation>
    </message>
    <message>
        <source>Page right</source>
        <translation>Página a la derecha</translation>
    </message>
    <message>
        <source>Scroll up</source>
        <translation>Subir</translation>
    </message>
    <message>
        <source>Scroll down</source>
        <translation>Bajar</translation>
    </message>
    <message>
        <source>Scroll left</source>
        <translation>A la izquierda</translation>
    </message>
    <message>
        <source>Scroll right</source>
        <translation>A la derecha</translation>
    </message>
</context>
<context>
    <name>QTabBar</name>
    <message>
        <source>Scroll Left</source>
        <translation>Fichas a la izquierda</translation>
    </message>
    <message>
        <source>Scroll Right</source>
        <translation>Fichas a la derecha</translation>
    </message>
</context>
<context>
    <name>QMessageBox</name>
    <message>
        <source>Show Details...</source>
        <translation>Mostrar detalles...</translation>
    </message>
    <message>
        <source>Hide Details...</source>
        <translation>Ocultar detalles...</translation>
    </message>
</context>
</TS>
