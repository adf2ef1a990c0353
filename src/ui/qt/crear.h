#pragma once

#include <memory>
#include <utility>

namespace kv {

/// Makes something that the toolkit owns: the caller hands it to a parent at once, or it deletes
/// itself when it is closed.
template <class T, class... A>
[[nodiscard]] T* crear(A&&... a) {
    return std::make_unique<T>(std::forward<A>(a)...).release();
}

/// The same for a control that is known by its name.
template <class T, class... A>
[[nodiscard]] T* control(const char* nombre, A&&... a) {
    T* nuevo = crear<T>(std::forward<A>(a)...);
    nuevo->setObjectName(nombre);
    return nuevo;
}

} // namespace kv
