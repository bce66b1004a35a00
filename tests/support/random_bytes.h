// Short byte strings drawn from a small alphabet, reproducibly: an alphabet dense in lead,
// continuation and surrogate-encoding bytes reaches the corners of UTF-8 handling quickly.
#pragma once

#include <cstdint>
#include <string>

class RandomBytes {
  public:
    template <size_t N>
    RandomBytes(const unsigned char (&alphabet)[N], uint32_t seed)
        : alphabet_(reinterpret_cast<const char *>(alphabet), N), seed_(seed) {}

    // A string of 0 to `max_length` bytes.
    std::string next(uint32_t max_length) {
        std::string s;
        for (uint32_t i = draw() % (max_length + 1); i > 0; --i)
            s += alphabet_[draw() % alphabet_.size()];
        return s;
    }

  private:
    // The high bits of a linear congruential step: its low bits repeat too soon.
    uint32_t draw() {
        seed_ = seed_ * 1103515245u + 12345u;
        return seed_ >> 16;
    }

    std::string alphabet_;
    uint32_t seed_;
};
