#pragma once

#include <optional>
#include <string_view>

namespace hcr {

// Cutting the text of a large XML document into pieces that are parsed one by one: the tree of a whole document takes
// five times the memory of its text. Nothing here judges the document, which is the parser's business.

/// What stands between the start tag and the end tag of an element.
struct ElementBody {
    std::size_t begin = 0, end = 0;
};

/// The body of the first element of this name that stands under the first top element `root`, or directly in the
/// document if there is no `root`. Nothing if there is none or if the text holds markup that can't be told apart
/// without parsing.
std::optional<ElementBody> gf_findElementBody(std::string_view text, std::string_view name);

/// Length of the first piece of a body that holds whole child elements and at least `wanted` bytes: the whole body if
/// it can't be cut.
std::size_t gf_pieceLength(std::string_view body, std::size_t wanted);

}  // namespace hcr
