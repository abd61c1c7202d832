#pragma once

#include <string_view>
#include <vector>

#include "sim/port/layouts.h"

namespace hcr {

/// Messages waiting for a client, one behind the other, each at a multiple of eight bytes.
struct SandboxOutbox {
    std::vector<u8> bytes;
};

/// Appends a zeroed message of `size` bytes with its head filled in; null when so much waits already that a simulator
/// would have dropped the client. The pointer is good until the next message is added.
u8* gf_sandboxAddMessage(SandboxOutbox& outbox, u32 size, SimRecvId id);

template <class Message>
Message* gf_sandboxAdd(SandboxOutbox& outbox, SimRecvId id) {
    return reinterpret_cast<Message*>(gf_sandboxAddMessage(outbox, sizeof(Message), id));
}

/// Copies a text into a field that keeps its last byte zero.
void gf_sandboxCopyText(char* field, std::size_t size, std::string_view text);

/// Hands every message to `dispatch`, as long as `alive` says so.
template <class Alive>
void gf_sandboxDeliver(SandboxOutbox& outbox, void (*dispatch)(SIMCONNECT_RECV*, u32, void*), void* context,
                       Alive alive) {
    std::size_t at = 0;
    while (at < outbox.bytes.size() && alive()) {
        auto* message = reinterpret_cast<SIMCONNECT_RECV*>(outbox.bytes.data() + at);
        const u32 size = message->dwSize;  // read before the client can touch it
        dispatch(message, size, context);
        at += (size + 7u) & ~std::size_t{7};
    }
}

}  // namespace hcr
