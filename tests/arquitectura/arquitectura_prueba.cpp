// SPDX-License-Identifier: Apache-2.0
// The tree keeps the shape that docs/architecture.md gives it, and the habits that the rest relies
// on.

#include "fuentes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <sstream>

namespace kv::arquitectura {
namespace fs = std::filesystem;
namespace {

constexpr std::size_t kLineasDeFuncion = 60;
constexpr std::size_t kLineasDeLaMitad = 6;
constexpr std::size_t kLineasDePrueba = 70;
constexpr std::size_t kLineasDeArchivo = 600;

const fs::path kRaiz = KV_FUENTES;

/// What cannot say its licence in itself, file or folder.
const std::vector<std::string> kSinLicencia = {
    // Every byte is the test: scripts with their line ends, inputs that fuzzing found, patches.
    "tests/vbscript/guiones/", "fuzz/corpus/", "tests/mundo/mutaciones/",
    // Every byte is the plant's.
    "examples/planta-",
    // A format without comments.
    "CMakePresets.json", "docs/imagenes/", "debian/changelog", "debian/source/format",
    // lupdate writes it anew and keeps no comment.
    "translations/DriverKV2200_en.ts",
    // The licence, and who holds it.
    "LICENSE", "debian/copyright"};

/// What a program includes of these standard headers for.
const std::map<std::string, std::vector<std::string>> kEstandar = {
    {"array", {"array", "to_array"}},
    {"charconv", {"from_chars", "to_chars"}},
    {"functional", {"function", "hash", "invoke", "less", "greater", "plus", "ref", "cref"}},
    {"limits", {"numeric_limits"}},
    {"map", {"map", "multimap"}},
    {"memory",
     {"unique_ptr", "shared_ptr", "weak_ptr", "enable_shared_from_this", "make_unique",
      "make_shared", "addressof", "construct_at", "destroy_at"}},
    {"optional", {"optional", "nullopt"}},
    {"set", {"set", "multiset"}},
    {"span", {"span", "as_bytes"}},
    {"string", {"string", "u16string", "to_string", "getline", "char_traits"}},
    {"string_view", {"string_view", "u16string_view", "char_traits"}},
    {"unordered_map", {"unordered_map", "unordered_multimap"}},
    {"variant", {"variant", "visit", "monostate"}},
    {"vector", {"vector"}}};

const std::vector<Fuente>& fuentes() {
    static const std::vector<Fuente> todas = leerFuentes(kRaiz);
    return todas;
}

const std::vector<Fila>& tabla() {
    static const std::vector<Fila> leida = leerTabla(kRaiz / "docs/architecture.md");
    return leida;
}

bool esDePruebas(const std::string& carpeta) {
    return carpeta == "tests" || carpeta == "bench" || carpeta == "fuzz";
}

/// The row that a file belongs to: the longest folder that it lies in; null if there is none.
const Fila* filaDe(const std::string& ruta) {
    const std::string r = ruta.starts_with("src/") ? ruta.substr(4) : ruta;
    const Fila* mejor = nullptr;
    for (const Fila& f : tabla()) {
        if (r.starts_with(f.carpeta + "/") &&
            (mejor == nullptr || f.carpeta.size() > mejor->carpeta.size()))
            mejor = &f;
    }
    // A folder below another one is that one's only when it says so: src/ has rows to the leaves.
    const bool suya =
        mejor != nullptr &&
        (!ruta.starts_with("src/") || r.find('/', mejor->carpeta.size() + 1) == std::string::npos);
    return suya ? mejor : nullptr;
}

/// Where an include in quotes leads, from the root of the tree; itself when nowhere.
std::string destinoDe(const std::string& desde, const std::string& incluido) {
    for (const fs::path& base :
         {fs::path(desde).parent_path(), fs::path("src"), fs::path("tools"), fs::path("tests")}) {
        const fs::path r = (base / incluido).lexically_normal();
        if (fs::exists(kRaiz / r)) return r.string();
    }
    return incluido;
}

/// The headers of the tree that a file includes.
const std::set<std::string>& incluidasPor(const Fuente& f) {
    static const std::regex include(R"re((?:^|\n)[ \t]*#[ \t]*include[ \t]*"([^"]+)")re");
    static std::map<std::string, std::set<std::string>> todas;
    const auto [cuales, nueva] = todas.try_emplace(f.ruta);
    if (nueva) {
        for (std::sregex_iterator i(f.texto.begin(), f.texto.end(), include), fin; i != fin; ++i)
            cuales->second.insert(destinoDe(f.ruta, (*i)[1]));
    }
    return cuales->second;
}

/// Files that do what others may not, because it is their business.
using Salvo = std::vector<std::string>;

bool salva(const Salvo& salvo, const std::string& ruta) {
    return std::any_of(salvo.begin(), salvo.end(),
                       [&](const std::string& s) { return ruta.starts_with(s); });
}

void nadieUsa(const char* que, const char* expresion, const Salvo& salvo,
              std::string Fuente::*donde = &Fuente::codigo) {
    const std::regex mala(expresion);
    for (const Fuente& f : fuentes()) {
        if (salva(salvo, f.ruta)) continue;
        const std::string& texto = f.*donde;
        for (std::sregex_iterator i(texto.begin(), texto.end(), mala), fin; i != fin; ++i)
            ADD_FAILURE_AT(f.ruta.c_str(),
                           static_cast<int>(1 + std::count(texto.begin(), (*i)[0].first, '\n')))
                << que << ": " << i->str();
    }
}

} // namespace

TEST(Arquitectura, LaTablaVaDeAbajoHaciaArriba) {
    ASSERT_GT(tabla().size(), 15U);
    std::set<std::string> conocidas;
    for (const Fila& f : tabla()) {
        for (const std::string& otra : f.incluye)
            EXPECT_TRUE(conocidas.contains(otra))
                << f.carpeta << " names " << otra << ", which has no row above it";
        EXPECT_TRUE(conocidas.insert(f.carpeta).second) << f.carpeta << " has two rows";
        EXPECT_TRUE(esDePruebas(f.carpeta) || !f.incluye.contains("platform/simulated"))
            << f.carpeta;
    }
}

TEST(Arquitectura, CadaCarpetaIncluyeSoloLoQueLaTablaLeDeja) {
    std::size_t vistos = 0;
    std::set<std::pair<std::string, std::string>> usados;
    for (const Fuente& f : fuentes()) {
        const Fila* fila = filaDe(f.ruta);
        ASSERT_NE(fila, nullptr) << f.ruta << " lies in a folder without a row";
        for (const std::string& h : incluidasPor(f)) {
            ++vistos;
            const Fila* otra = filaDe(h);
            ASSERT_NE(otra, nullptr) << f.ruta << " includes " << h << ", which is nowhere";
            EXPECT_TRUE(otra == fila || fila->incluye.contains(otra->carpeta))
                << f.ruta << " includes " << h << "; " << fila->carpeta << " may not include "
                << otra->carpeta;
            usados.emplace(fila->carpeta, otra->carpeta);
        }
    }
    EXPECT_GT(vistos, 100U);
    for (const Fila& f : tabla()) {
        if (esDePruebas(f.carpeta)) continue;
        for (const std::string& otra : f.incluye)
            EXPECT_TRUE(usados.contains({f.carpeta, otra}))
                << f.carpeta << " may include " << otra << " and does not";
    }
}

TEST(Arquitectura, LoQueSeIncluyeSeUsa) {
    struct Nombres {
        std::set<std::string> declara, anuncia;
    };
    std::map<std::string, Nombres> cabeceras;
    for (const Fuente& f : fuentes()) {
        if (f.ruta.ends_with(".h"))
            cabeceras[f.ruta] = {declarados(f.codigo), anunciados(f.codigo)};
    }
    const auto sinExtension = [](const std::string& r) { return r.substr(0, r.rfind('.')); };
    static const std::regex estandar(R"(#include <(\w+)>)");
    std::size_t vistos = 0;
    for (const Fuente& f : fuentes()) {
        std::set<std::string> usados = identificadores(f.codigo);
        for (std::sregex_iterator i(f.texto.begin(), f.texto.end(), estandar), fin; i != fin; ++i) {
            const auto h = kEstandar.find((*i)[1]);
            EXPECT_TRUE(
                h == kEstandar.end() ||
                std::ranges::any_of(h->second, [&](const auto& d) { return usados.contains(d); }))
                << f.ruta << " includes <" << (*i)[1] << "> and uses nothing of it";
        }
        // What headers only announce may be needed whole, though not by name.
        const std::set<std::string> suyas = incluidasPor(f);
        std::set<std::string> cerca = suyas;
        for (const Fuente& otra : fuentes()) {
            if (!suyas.contains(otra.ruta)) continue;
            cerca.insert(incluidasPor(otra).begin(), incluidasPor(otra).end());
        }
        for (const std::string& h : cerca)
            usados.insert(cabeceras[h].anuncia.begin(), cabeceras[h].anuncia.end());
        for (const std::string& h : suyas) {
            if (sinExtension(h) == sinExtension(f.ruta)) continue;
            ++vistos;
            EXPECT_TRUE(std::ranges::any_of(cabeceras[h].declara,
                                            [&](const auto& d) { return usados.contains(d); }))
                << f.ruta << " includes " << h << " and uses nothing of it";
        }
    }
    EXPECT_GT(vistos, 500U);
}

TEST(Arquitectura, ElTiempoYElAzarVienenDeLaPlataforma) {
    // The tools bring clocks of their own to what they drive; benchmarks measure; a test that
    // starts a program must not wait for it for ever.
    nadieUsa("a clock of its own",
             R"(\b(clock_gettime|gettimeofday|time\s*\(\s*(0|NULL|nullptr|&)|\w+_clock::now|)"
             R"(timespec_get|std::time\s*\())",
             {"src/platform/epoll/", "tools/", "bench/", "tests/apoyo/proceso.h"});
    nadieUsa("a sleep", R"(\b(sleep|usleep|nanosleep|clock_nanosleep|sleep_for|sleep_until)\s*\()",
             {});
    nadieUsa("chance without a seed", R"(\b(std::rand|rand|srand)\s*\(|\brandom_device\b)", {});
}

TEST(Arquitectura, LaMemoriaTieneDuenio) {
    // The language counts the references of its values itself, against an account that bounds what
    // a script may take; the test framework owns what a factory of test cases gives it; a test that
    // lets allocations fail is the allocator.
    nadieUsa("memory without an owner",
             R"(\bnew\s+[\w:(]|(^|[^=])\s\bdelete\b\s*[\w*([]|\b(malloc|calloc|realloc|free)\s*\()",
             {"src/vbscript/", "tests/vbscript/guiones_prueba.cpp", "tests/fallas/memoria.cpp"});
}

TEST(Arquitectura, NadaQuedaAMedioHacerNiImprimeParaDepurar) {
    static const std::regex marca(R"(\b(TODO|FIXME|XXX)\b)");
    for (const Fuente& f : fuentes()) {
        if (f.ruta.starts_with("tests/arquitectura/")) continue; // they stand in its rules
        EXPECT_FALSE(std::regex_search(f.texto, marca)) << f.ruta;
    }
    nadieUsa("a print", R"(\bstd::(cout|cerr|clog)\b|\b(printf|fprintf|puts|putchar|perror)\s*\()",
             {"tools/", "bench/", "src/main/main.cpp", "src/main/salida_de_traza.cpp",
              "fuzz/repetir.cpp", "tests/fallas/",
              "tests/mundo/main.cpp"}); // the last tell how much they have tried
}

TEST(Arquitectura, LosComentariosNombranDeQuienHablan) {
    // A sentence may go on in the next line, behind its slashes.
    nadieUsa("no noun",
             R"((\b[Ss]ome(body|one)|\b[Tt]old(?![\s/<]+apart\b)|(\bis|\bare|:)[\s/<]+none)\b)",
             {"tests/", "bench/", "fuzz/"}, &Fuente::comentarios);
}

TEST(Arquitectura, CadaArchivoDiceSuLicencia) {
    const std::string licencia = "SPDX-License-Identifier: Apache-2.0";
    const std::vector<std::string> archivos = archivosDe(kRaiz);
    for (const std::string& r : archivos) {
        if (salva(kSinLicencia, r)) continue;
        const std::string texto = contenidoDe(kRaiz / r);
        const auto donde = texto.find(licencia);
        const bool codigo = r.ends_with(".cpp") || r.ends_with(".h");
        const bool alPrincipio = donde < (codigo ? 4U : 100U);
        const bool alFinal = r.ends_with(".md") && texto.ends_with("\n<!-- " + licencia + " -->\n");
        EXPECT_TRUE(alPrincipio || alFinal) << r << " does not say its licence";
    }
    for (const std::string& s : kSinLicencia)
        EXPECT_TRUE(std::any_of(archivos.begin(), archivos.end(),
                                [&](const std::string& r) { return r.starts_with(s); }))
            << s << " is not there any more";
}

TEST(Arquitectura, UnArchivoDePruebasSeLlamaAsiYSoloEl) {
    static const std::regex prueba(R"(\n(TEST|TEST_F|TEST_P)\()");
    for (const Fuente& f : fuentes())
        EXPECT_EQ(f.ruta.ends_with("_prueba.cpp"), std::regex_search(f.codigo, prueba)) << f.ruta;
}

TEST(Arquitectura, FuncionesYArchivosCabenEnLaVista) {
    std::size_t vistas = 0;
    for (const Fuente& f : fuentes()) {
        EXPECT_LE(std::count(f.texto.begin(), f.texto.end(), '\n'), kLineasDeArchivo) << f.ruta;
        for (const Funcion& g : funcionesDe(f.codigo)) {
            ++vistas;
            EXPECT_LE(g.lineas, f.ruta.starts_with("tests/") ? kLineasDePrueba : kLineasDeFuncion)
                << f.ruta << ":" << f.lineaDe(g.posicion);
        }
    }
    EXPECT_GT(vistas, 500U);
}

TEST(Arquitectura, LaMitadDeLasFuncionesSonCortas) {
    std::vector<std::size_t> largos;
    for (const Fuente& f : fuentes()) {
        if (!f.ruta.starts_with("src/")) continue;
        for (const Funcion& g : funcionesDe(f.codigo))
            largos.push_back(g.lineas);
    }
    const auto medio = largos.begin() + static_cast<std::ptrdiff_t>(largos.size() / 2);
    std::nth_element(largos.begin(), medio, largos.end());
    EXPECT_LE(*medio, kLineasDeLaMitad);
}

TEST(Arquitectura, LasPruebasSonDeUnCuartoAUnTercio) {
    std::size_t todas = 0;
    std::size_t dePruebas = 0;
    for (const Fuente& f : fuentes()) {
        std::istringstream codigo(f.codigo);
        std::size_t suyas = 0;
        for (std::string l; std::getline(codigo, l);)
            suyas += l.find_first_not_of(" \t") == std::string::npos ? 0 : 1;
        todas += suyas;
        if (f.ruta.starts_with("tests/") || f.ruta.starts_with("fuzz/")) dePruebas += suyas;
    }
    EXPECT_GE(dePruebas * 100, todas * 25) << dePruebas << " of " << todas;
    EXPECT_LE(dePruebas * 100, todas * 33) << dePruebas << " of " << todas;
}

TEST(Arquitectura, TodoSeCompila) {
    std::map<std::string, std::string> listas; // by folder
    for (const fs::path r : archivosDe(kRaiz)) {
        if (r.filename() == "CMakeLists.txt")
            listas[r.parent_path().string()] = " " + contenidoDe(kRaiz / r) + " ";
    }
    for (const Fuente& f : fuentes()) {
        if (!f.ruta.ends_with(".cpp")) continue;
        bool nombrada = false;
        for (fs::path carpeta = fs::path(f.ruta).parent_path(); !carpeta.empty();
             carpeta = carpeta.parent_path()) {
            const std::string nombre = fs::path(f.ruta).lexically_relative(carpeta).string();
            const std::string& lista = listas[carpeta.string()];
            static const std::string separa = " \n\t()";
            for (auto p = lista.find(nombre); p != std::string::npos; p = lista.find(nombre, p + 1))
                nombrada |= separa.find(lista[p - 1]) != std::string::npos &&
                            separa.find(lista[p + nombre.size()]) != std::string::npos;
        }
        EXPECT_TRUE(nombrada) << f.ruta << " is in no CMakeLists.txt";
    }
}

TEST(Arquitectura, ElContadorDeLineasVeLoQueDebe) {
    const std::string codigo = sinComentariosNiLiterales("namespace a {\n"
                                                         "struct S : T {\n"
                                                         "    S() : x{1}, y(2) {\n"
                                                         "        // }}}\n"
                                                         "        f(\"}\", '}', 1'000);\n"
                                                         "    }\n"
                                                         "    int x = 3;\n"
                                                         "};\n"
                                                         "int g(int n) {\n"
                                                         "    if (n) {\n"
                                                         "        return 1;\n"
                                                         "    }\n"
                                                         "    return 2;\n"
                                                         "}\n"
                                                         "} // namespace a\n");
    const auto funciones = funcionesDe(codigo);
    ASSERT_EQ(funciones.size(), 2U);
    EXPECT_EQ(funciones[0].lineas, 4U);
    EXPECT_EQ(funciones[1].lineas, 6U);
}

TEST(Arquitectura, DeUnaCabeceraCuentaLoQueDeclara) {
    const std::string codigo = "#define MARCA(x) f(x)\n"
                               "namespace a::b {\n"
                               "class Anunciada;\n"
                               "struct S final : T { int dentro(); };\n"
                               "enum Clase : char { Uno, Otra = 2 };\n"
                               "enum class Color { Rojo };\n"
                               "inline constexpr std::array<int, 2> kDos = {1, 2};\n"
                               "inline constexpr int kA = 1, kB = 2;\n"
                               "[[nodiscard]] std::map<int, X> f(const Y& y, int z = 3);\n"
                               "template <class Q> Q* g(Q q) { return h(q); }\n"
                               "using Corto = std::vector<Largo>;\n"
                               "}\n";
    EXPECT_EQ(declarados(codigo),
              (std::set<std::string>{"MARCA", "S", "Clase", "Uno", "Otra", "Color", "kDos", "kA",
                                     "kB", "f", "g", "Corto"}));
    EXPECT_EQ(anunciados(codigo), std::set<std::string>{"Anunciada"});
}

} // namespace kv::arquitectura
