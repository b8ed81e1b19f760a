#include "platform/portable/access/jet_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "platform/portable/access/rc4.h"
#include "platform/values/runtime_error.h"
#include "platform/values/text.h"

namespace pxtarvo::portable {

namespace {

// The first bytes of every Jet file, the version after them: 0 for Access 97, 1 for Access 2000 to 2003.
constexpr std::string_view jetSignature("\0\1\0\0Standard Jet DB\0", 20);
constexpr unsigned char jet3Version = 0;
constexpr unsigned char jet4Version = 1;

// A part of the first page is always encoded; the key of the other pages lies in it.
constexpr unsigned char headerKey[] = {0xC7, 0xDA, 0x39, 0x6B};
constexpr std::size_t encodedHeaderOffset = 0x18;
constexpr std::size_t encodedHeaderBytes = 128;
constexpr std::size_t keyOffset = 0x3E;

[[noreturn]] void raiseProviderFailure(std::string description) {
    throw RuntimeError(ErrorNumber::ProviderFailure, std::move(description));
}

}  // namespace

JetFile::JetFile(const std::string& place, std::string_view fileName)
    : quotedName_(joined({"'", fileName, "'"})) {
    std::error_code unknown;
    const auto status = std::filesystem::status(place, unknown);
    if (place.empty() || status.type() == std::filesystem::file_type::not_found) {
        raiseProviderFailure("No se pudo encontrar el archivo " + quotedName_ + ".");
    }
    if (std::filesystem::is_regular_file(status)) file_.reset(std::fopen(place.c_str(), "rbe"));
    if (!file_) {
        raiseProviderFailure(
            "El motor de base de datos Microsoft Jet no puede abrir el archivo " + quotedName_ +
            ". Está abierto en modo exclusivo por otro usuario o bien necesita permiso para ver sus datos.");
    }

    JetPage header;
    const std::size_t held = read(0, header);
    const auto bytes = header.bytes();
    const unsigned char version = bytes[jetSignature.size()];
    const bool isJet = held > jetSignature.size() &&
                       std::equal(jetSignature.begin(), jetSignature.end(), bytes.begin(),
                                  [](char c, unsigned char b) { return static_cast<unsigned char>(c) == b; });
    if (isJet && version == jet3Version) {
        raiseProviderFailure("La base de datos " + quotedName_ +
                             " tiene el formato de Access 97, que este lector no admite.");
    }
    if (!isJet || version != jet4Version) {
        raiseProviderFailure("Formato de base de datos " + quotedName_ + " no reconocido.");
    }
    applyRc4(headerKey, bytes.subspan(encodedHeaderOffset, encodedHeaderBytes));
    key_ = littleEndian32(&bytes[keyOffset]);
}

void JetFile::raiseDamaged() const {
    raiseProviderFailure(
        "El motor de base de datos Microsoft Jet no pudo leer todos los registros del archivo " +
        quotedName_ + ": está dañado o incompleto.");
}

std::uint64_t JetFile::pageCount() const {
    struct stat status {};
    if (fstat(fileno(file_.get()), &status) != 0) raiseDamaged();
    return static_cast<std::uint64_t>(status.st_size) / jetPageSize;
}

/// The bytes of the page that the file holds.
std::size_t JetFile::read(std::uint64_t number, JetPage& page) const {
    const ssize_t held = pread(fileno(file_.get()), page.bytes().data(), jetPageSize,
                               static_cast<off_t>(number * jetPageSize));
    return held < 0 ? 0 : static_cast<std::size_t>(held);
}

void JetFile::readPage(std::uint64_t number, JetPage& page) const {
    if (read(number, page) != jetPageSize) raiseDamaged();
    if (key_ == 0 || number == 0) return;
    std::array<unsigned char, 4> key;
    for (std::size_t i = 0; i < key.size(); ++i) {
        key[i] = static_cast<unsigned char>((key_ ^ number) >> 8 * i);
    }
    applyRc4(key, page.bytes());
}

}  // namespace pxtarvo::portable
