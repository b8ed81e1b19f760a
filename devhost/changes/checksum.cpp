#include "devhost/changes/checksum.h"

#include <nettle/base16.h>
#include <nettle/sha2.h>

namespace pxtarvo::devhost {

std::string sha256(std::string_view bytes) {
    sha256_ctx hashing;
    sha256_init(&hashing);
    sha256_update(&hashing, bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
    std::uint8_t digest[SHA256_DIGEST_SIZE];
    sha256_digest(&hashing, sizeof digest, digest);
    std::string text(BASE16_ENCODE_LENGTH(sizeof digest), '\0');
    base16_encode_update(text.data(), sizeof digest, digest);
    return text;
}

}  // namespace pxtarvo::devhost
