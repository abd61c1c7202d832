#include "sim/port/sandbox/outbox.h"

#include <algorithm>
#include <cstring>

namespace hcr {
namespace {

constexpr std::size_t kMaxWaitingBytes = 64u << 20;  // a client that never dispatches must not eat the memory
constexpr u32 kServerVersion = 6;

}  // namespace

u8* gf_sandboxAddMessage(SandboxOutbox& outbox, u32 size, SimRecvId id) {
    const std::size_t at = outbox.bytes.size();
    if (at + size > kMaxWaitingBytes) return nullptr;
    outbox.bytes.resize(at + ((size + 7u) & ~std::size_t{7}));
    u8* message = outbox.bytes.data() + at;
    const SIMCONNECT_RECV head{size, kServerVersion, id};
    std::memcpy(message, &head, sizeof head);
    return message;
}

void gf_sandboxCopyText(char* field, std::size_t size, std::string_view text) {
    std::memset(field, 0, size);
    std::memcpy(field, text.data(), std::min(text.size(), size - 1));
}

}  // namespace hcr
