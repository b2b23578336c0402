// SPDX-License-Identifier: MIT
// A value, or the reason why there is none. Errors below the engine bridge are values; nothing here throws.
#pragma once

#include <cassert>
#include <utility>
#include <variant>

namespace quoddle {

/// Wraps an error so that a Result can be built from it without ambiguity: `return Failure{status};`
template<class E>
struct Failure {
    E error;
};
template<class E>
Failure(E) -> Failure<E>;

template<class T, class E>
class [[nodiscard]] Result {
public:
    Result(T value) : mContent(std::in_place_index<0>, std::move(value)) {}
    template<class F>
    Result(Failure<F> failure) : mContent(std::in_place_index<1>, std::move(failure.error)) {}

    explicit operator bool() const { return mContent.index() == 0; }
    /// Valid only when the Result holds a value.
    T& operator*() { return *std::get_if<0>(&mContent); }
    const T& operator*() const { return *std::get_if<0>(&mContent); }
    T* operator->() { return std::get_if<0>(&mContent); }
    const T* operator->() const { return std::get_if<0>(&mContent); }
    /// Valid only when the Result holds an error.
    E& error() { return *std::get_if<1>(&mContent); }
    const E& error() const { return *std::get_if<1>(&mContent); }

private:
    std::variant<T, E> mContent;
};

} // namespace quoddle
