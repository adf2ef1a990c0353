// SPDX-License-Identifier: Apache-2.0
#include "script/errores.h"

#include "vbscript/surroundings/fault.h"

#include <algorithm>
#include <iterator>

namespace kv {
namespace {

struct Texto {
    int numero;
    std::string_view texto;
};

// In the order of their numbers, in which they are looked up. From 1001 on: what does not compile.
constexpr Texto kTextos[] = {
    {5, "Llamada o argumento no válido"},
    {6, "Desbordamiento"},
    {7, "Memoria insuficiente"},
    {9, "El subíndice está fuera del intervalo"},
    {10, "La matriz es fija o está bloqueada por ahora"},
    {11, "División por cero"},
    {13, "Los tipos no coinciden"},
    {14, "No hay lugar para más texto"},
    {17, "No se puede hacer lo pedido"},
    {28, "Demasiadas llamadas anidadas"},
    {35, "Sub o Function no definida"},
    {48, "Error al cargar una DLL"},
    {51, "Error interno"},
    {52, "Nombre o número de archivo incorrecto"},
    {53, "No se encuentra el archivo"},
    {54, "Modo de archivo incorrecto"},
    {55, "El archivo ya está abierto"},
    {57, "Error de entrada o salida del dispositivo"},
    {58, "El archivo ya existe"},
    {61, "Disco lleno"},
    {62, "Se leyó más allá del fin del archivo"},
    {67, "Demasiados archivos"},
    {68, "Dispositivo no disponible"},
    {70, "Permiso denegado"},
    {71, "El disco no está listo"},
    {74, "No se puede cambiar el nombre a otra unidad"},
    {75, "Error de acceso a la ruta o al archivo"},
    {76, "No se encuentra la ruta"},
    {91, "Variable de objeto no establecida"},
    {92, "Bucle For sin inicializar"},
    {94, "Uso no válido de Null"},
    {322, "No se puede crear un archivo temporal necesario"},
    {424, "Se requiere un objeto"},
    {429, "No se puede crear el objeto"},
    {430, "La clase no admite automatización"},
    {432, "No se encuentra el archivo o la clase"},
    {438, "El objeto no tiene esa propiedad o método"},
    {440, "Error de automatización"},
    {445, "El objeto no admite esa acción"},
    {446, "El objeto no admite argumentos con nombre"},
    {447, "El objeto no admite la configuración regional"},
    {448, "No se encuentra el argumento con nombre"},
    {449, "Falta un argumento que no es opcional"},
    {450, "Cantidad de argumentos o asignación de propiedad no válida"},
    {451, "El objeto no es una colección"},
    {453, "No se encuentra la función de la DLL"},
    {455, "Error de bloqueo de un recurso de código"},
    {457, "La clave ya pertenece a otro elemento de la colección"},
    {458, "La variable es de un tipo que el lenguaje no admite"},
    {462, "El servidor remoto no existe o no está disponible"},
    {481, "Imagen no válida"},
    {500, "Variable no definida"},
    {501, "Asignación no válida"},
    {502, "El objeto no es seguro para usarlo"},
    {503, "El objeto no es seguro para inicializarlo"},
    {504, "El objeto no es seguro para crearlo"},
    {505, "Referencia no válida o sin calificar"},
    {506, "Clase no definida"},
    {507, "Se produjo una excepción"},
    {1001, "Memoria insuficiente"},
    {1002, "Error de sintaxis"},
    {1003, "Se esperaba ':'"},
    {1005, "Se esperaba '('"},
    {1006, "Se esperaba ')'"},
    {1007, "Se esperaba ']'"},
    {1010, "Se esperaba un identificador"},
    {1011, "Se esperaba '='"},
    {1012, "Se esperaba 'If'"},
    {1013, "Se esperaba 'To'"},
    {1014, "Se esperaba 'End'"},
    {1015, "Se esperaba 'Function'"},
    {1016, "Se esperaba 'Sub'"},
    {1017, "Se esperaba 'Then'"},
    {1018, "Se esperaba 'Wend'"},
    {1019, "Se esperaba 'Loop'"},
    {1020, "Se esperaba 'Next'"},
    {1021, "Se esperaba 'Case'"},
    {1022, "Se esperaba 'Select'"},
    {1023, "Se esperaba una expresión"},
    {1024, "Se esperaba una instrucción"},
    {1025, "Se esperaba el fin de la instrucción"},
    {1026, "Se esperaba una constante entera"},
    {1027, "Se esperaba 'While' o 'Until'"},
    {1028, "Se esperaba 'While', 'Until' o el fin de la instrucción"},
    {1029, "Se esperaba 'With'"},
    {1030, "Identificador demasiado largo"},
    {1031, "Número no válido"},
    {1032, "Carácter no válido"},
    {1033, "Texto sin comilla de cierre"},
    {1034, "Comentario sin terminar"},
    {1037, "Uso no válido de 'Me'"},
    {1038, "'Loop' sin 'Do'"},
    {1039, "'Exit' fuera de lugar"},
    {1040, "Variable de control de 'For' no válida"},
    {1041, "Nombre definido otra vez"},
    {1042, "Debe ser la primera instrucción de la línea"},
    {1043, "No se puede asignar a un argumento que no es ByVal"},
    {1044, "Una Sub no se llama con paréntesis"},
    {1045, "Se esperaba una constante literal"},
    {1046, "Se esperaba 'In'"},
    {1047, "Se esperaba 'Class'"},
    {1048, "Debe definirse dentro de una Class"},
    {1049, "Se esperaba Let, Set o Get en la declaración de la propiedad"},
    {1050, "Se esperaba 'Property'"},
    {1051, "Las propiedades de un nombre deben tener los mismos argumentos"},
    {1052, "Una Class no puede tener dos miembros predeterminados"},
    {1053, "Class_Initialize y Class_Terminate no tienen argumentos"},
    {1054, "Property Set o Let debe tener al menos un argumento"},
    {1055, "'Next' sin 'For'"},
    {1057, "'Default' necesita también 'Public'"},
    {1058, "'Default' sólo puede estar en Property Get"},
    {5008, "Asignación no válida"},
    {5016, "Se esperaba una expresión regular"},
    {5017, "Error de sintaxis en la expresión regular"},
    {5018, "Cuantificador fuera de lugar"},
    {5019, "Se esperaba ']' en la expresión regular"},
    {5020, "Se esperaba ')' en la expresión regular"},
    {5021, "Intervalo no válido en un juego de caracteres"},
    {32811, "No se encuentra el elemento"},
};

std::string_view textoDe(int numero) {
    const auto* donde =
        std::lower_bound(std::begin(kTextos), std::end(kTextos), numero,
                         [](const Texto& texto, int n) { return texto.numero < n; });
    return donde != std::end(kTextos) && donde->numero == numero
               ? donde->texto
               : std::string_view("Error desconocido");
}

std::string sinLugar(const vbscript::ScriptError& error) {
    using vbscript::BudgetKind;
    if (error.budget && error.description == budgetText(BudgetKind::Time))
        return "El guion corrió más tiempo que el permitido";
    if (error.budget && error.description == budgetText(BudgetKind::Steps))
        return "El guion dio más pasos que los permitidos";
    for (const Frase& nuestra : {kGuionDemasiadoLargo, kGuionConMarcaUtf8}) {
        if (error.description == nuestra.ingles) return std::string(nuestra.castellano);
    }
    const std::string_view todo = error.description;
    const std::string_view ingles = vbscript::errorText(error.number);
    if (!todo.starts_with(ingles)) return error.description;
    const std::string_view resto = todo.substr(ingles.size()); // the name that it is about
    if (!resto.empty() && !resto.starts_with(": '")) return error.description;
    return std::string(textoDe(error.number)).append(resto);
}

} // namespace

void nombrarMarcaUtf8(std::string_view texto, vbscript::ScriptError& error) {
    if (texto.starts_with("ï»¿") && error.compileTime && error.line == 1 && error.column == 1)
        error.description = kGuionConMarcaUtf8.ingles;
}

std::string enCastellano(const vbscript::ScriptError& error) {
    std::string que = sinLugar(error);
    if (error.ranText.empty()) return que;
    return que + ", en la línea " + std::to_string(error.ranLine) + ", columna " +
           std::to_string(error.ranColumn) + " del texto que ahí se ejecuta: " + error.ranText;
}

} // namespace kv
