#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace kv {

/// A list with one element per register slot of a block. Its length is given once; most blocks have
/// one slot, which costs no memory of its own.
template <class T>
class Ranuras {
  public:
    /// `cuantas` elements, all equal to `valor`; what was there before is gone.
    void assign(std::size_t cuantas, T valor) {
        cuantas_ = static_cast<std::uint32_t>(cuantas);
        una_ = valor;
        varias_ = cuantas > 1 ? std::make_unique<T[]>(cuantas) : nullptr;
        if (varias_) std::fill_n(varias_.get(), cuantas, valor);
    }
    [[nodiscard]] std::size_t size() const { return cuantas_; }
    [[nodiscard]] bool empty() const { return cuantas_ == 0; }
    [[nodiscard]] T& operator[](std::size_t k) { return begin()[k]; }
    [[nodiscard]] const T& operator[](std::size_t k) const { return begin()[k]; }
    [[nodiscard]] const T& front() const { return *begin(); }
    [[nodiscard]] T* begin() { return varias_ ? varias_.get() : &una_; }
    [[nodiscard]] const T* begin() const { return varias_ ? varias_.get() : &una_; }
    [[nodiscard]] const T* end() const { return begin() + cuantas_; }

  private:
    std::unique_ptr<T[]> varias_;
    T una_{};
    std::uint32_t cuantas_ = 0;
};

} // namespace kv
