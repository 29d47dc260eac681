#pragma once

namespace brightsweep {

/// What the licence allows. This program is free: the gate is always open, and this is its one
/// place.
namespace LicenceGate {

constexpr bool isOpen() {
    return true;
}

} // namespace LicenceGate
} // namespace brightsweep
