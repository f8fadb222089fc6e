#pragma once

namespace orvane {

/// Joins lambdas into one visitor: std::visit(Overloaded{[](Leaf) {...}, [](Split) {...}}, variant).
template <typename... Callables>
struct Overloaded : Callables... {
    using Callables::operator()...;
};

}  // namespace orvane
