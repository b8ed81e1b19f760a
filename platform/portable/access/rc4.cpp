#include "platform/portable/access/rc4.h"

#include <array>
#include <numeric>
#include <utility>

namespace pxtarvo::portable {

void applyRc4(std::span<const unsigned char> key, std::span<unsigned char> bytes) {
    std::array<unsigned char, 256> state;
    std::iota(state.begin(), state.end(), 0);
    for (unsigned i = 0, j = 0; i < 256; ++i) {
        j = (j + state[i] + key[i % key.size()]) & 0xFF;
        std::swap(state[i], state[j]);
    }
    unsigned i = 0;
    unsigned j = 0;
    for (unsigned char& byte : bytes) {
        i = (i + 1) & 0xFF;
        j = (j + state[i]) & 0xFF;
        std::swap(state[i], state[j]);
        byte ^= state[(state[i] + state[j]) & 0xFF];
    }
}

}  // namespace pxtarvo::portable
