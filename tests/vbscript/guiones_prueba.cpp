// SPDX-License-Identifier: Apache-2.0
#include "vbscript/lector_de_guiones.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

#include <memory>

// One test case a script file, named after its folder and file.

namespace vbscript {

namespace {

class CasoGuion : public ::testing::Test {
  public:
    explicit CasoGuion(std::string ruta) : ruta_(std::move(ruta)) {}
    void TestBody() override {
        for (const std::string& queja : Guion(ruta_).ejecutar())
            ADD_FAILURE_AT(ruta_.c_str(), 0) << queja;
    }

  private:
    std::string ruta_;
};

bool registrar() {
    namespace fs = std::filesystem;
    std::vector<fs::path> rutas;
    for (const auto& e : fs::recursive_directory_iterator(KV_FUENTES "/tests/vbscript/guiones")) {
        if (e.path().extension() == ".vbs") rutas.push_back(e.path());
    }
    std::sort(rutas.begin(), rutas.end());
    for (const fs::path& r : rutas) {
        ::testing::RegisterTest(r.parent_path().filename().c_str(), r.stem().c_str(), nullptr,
                                nullptr, __FILE__, __LINE__,
                                [ruta = r.string()]() -> ::testing::Test* {
                                    return std::make_unique<CasoGuion>(ruta).release();
                                });
    }
    return !rutas.empty();
}

const bool registrados = registrar();

} // namespace

TEST(Guiones, HayGuiones) { EXPECT_TRUE(registrados); }

} // namespace vbscript
