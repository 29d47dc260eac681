#pragma once

#include <chrono>
#include <cstddef>

namespace brightsweep {

/// How much of a file is asked for at once where it has to be fetched: a whole block of a fast
/// disk, and of a slow one so little that a stop is looked at several times a second. It begins
/// with little, as nothing is known yet. Belongs to one thread.
class ReadingPace {
public:
    static constexpr std::size_t least = 16 * 1024;
    static constexpr std::size_t most = 1024 * 1024;

    /// A power of two, between the two.
    std::size_t pieceSize() const { return m_pieceSize; }

    /// Told of each piece that was fetched.
    void fetched(std::size_t size, std::chrono::steady_clock::duration time) {
        if (time < quick && size == m_pieceSize && m_pieceSize < most)
            m_pieceSize *= 2;
        for (; time > slow && m_pieceSize > least; time /= 2)
            m_pieceSize /= 2;
    }

private:
    static constexpr std::chrono::milliseconds quick{50};
    static constexpr std::chrono::milliseconds slow{200};

    std::size_t m_pieceSize = least;
};

} // namespace brightsweep
