#pragma once

namespace ktr {

/// One handler for each type of a variant, for std::visit.
template <class... Handlers> struct Overloaded : Handlers...
{
    using Handlers::operator()...;
};
template <class... Handlers> Overloaded(Handlers...) -> Overloaded<Handlers...>;

} // namespace ktr
