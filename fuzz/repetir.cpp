// SPDX-License-Identifier: Apache-2.0
// A fuzz target without the fuzzer: runs every file of the folders that are named, once.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <set>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo);

int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    std::set<fs::path> archivos;
    for (int i = 1; i < argc; ++i) {
        for (const auto& e : fs::recursive_directory_iterator(argv[i])) {
            if (e.is_regular_file()) archivos.insert(e.path());
        }
    }
    for (const fs::path& archivo : archivos) {
        std::cout << archivo.string() << std::endl; // who dies here has said of what
        std::ifstream entrada(archivo, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(entrada), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), // NOLINT
                               bytes.size());
    }
    std::cout << archivos.size() << " inputs\n";
    return archivos.empty() ? 1 : 0;
}
