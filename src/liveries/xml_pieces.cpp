#include "liveries/xml_pieces.h"

#include <algorithm>

#include "platform/types.h"

namespace hcr {
namespace {

enum class MarkupKind { start, end, empty, skipped, unknown };

struct Markup {
    MarkupKind kind = MarkupKind::unknown;
    std::size_t begin = 0, end = 0;  ///< of the whole markup, brackets included
    std::string_view name;
};

Markup lf_skipped(std::string_view text, std::size_t begin, std::string_view opening, std::string_view closing) {
    const std::size_t at = text.find(closing, begin + opening.size());
    if (at == std::string_view::npos) return {MarkupKind::unknown, begin, text.size(), {}};
    return {MarkupKind::skipped, begin, at + closing.size(), {}};
}

/// Position of the ">" of a tag, quoted texts passed over; the text's size if there is none.
std::size_t lf_tagEnd(std::string_view text, std::size_t from) {
    for (std::size_t at = from; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '>') return at;
        if (c != '"' && c != '\'') continue;
        at = text.find(c, at + 1);
        if (at == std::string_view::npos) break;
    }
    return text.size();
}

/// The markup that begins at the "<" at `begin`.
Markup lf_markupAt(std::string_view text, std::size_t begin) {
    const std::string_view rest = text.substr(begin);
    if (rest.starts_with("<!--")) return lf_skipped(text, begin, "<!--", "-->");
    if (rest.starts_with("<?")) return lf_skipped(text, begin, "<?", "?>");
    if (rest.starts_with("<!")) return {MarkupKind::unknown, begin, text.size(), {}};
    const std::size_t close = lf_tagEnd(text, begin + 1);
    if (close == text.size()) return {MarkupKind::unknown, begin, close, {}};
    const bool isEnd = text[begin + 1] == '/';
    const std::size_t nameAt = begin + (isEnd ? 2 : 1);
    const std::size_t nameEnd = text.find_first_of(" \t\r\n/>", nameAt);
    const MarkupKind kind = isEnd ? MarkupKind::end : text[close - 1] == '/' ? MarkupKind::empty : MarkupKind::start;
    return {kind, begin, close + 1, text.substr(nameAt, nameEnd - nameAt)};
}

/// State of the walk for gf_findElementBody.
struct BodySearch {
    std::string_view name;
    i64 depth = 0;
    bool inRoot = false, rootSeen = false;
    std::optional<i64> openAt;  ///< depth of the element whose body is being passed
    std::size_t bodyBegin = 0;
    std::optional<ElementBody> underRoot, atTop;

    void enter(const Markup& markup) {
        if (depth == 0 && markup.name == "root" && !rootSeen) inRoot = rootSeen = true;
        const bool wanted = markup.name == name && !openAt &&
                            ((depth == 1 && inRoot && !underRoot) || (depth == 0 && !rootSeen && !atTop));
        if (wanted) {
            openAt = depth;
            bodyBegin = markup.end;
        }
        ++depth;
    }

    void leave(const Markup& markup) {
        --depth;
        if (openAt == depth) {
            (depth == 1 ? underRoot : atTop) = ElementBody{bodyBegin, std::max(bodyBegin, markup.begin)};
            openAt.reset();
        }
        if (depth == 0) inRoot = false;
    }
};

}  // namespace

std::optional<ElementBody> gf_findElementBody(std::string_view text, std::string_view name) {
    if (text.find('\0') != std::string_view::npos) return std::nullopt;  // where a parser stops
    BodySearch search;
    search.name = name;
    for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at)) {
        const Markup markup = lf_markupAt(text, at);
        if (markup.kind == MarkupKind::unknown) return std::nullopt;
        if (markup.kind == MarkupKind::start || markup.kind == MarkupKind::empty) search.enter(markup);
        if (markup.kind == MarkupKind::end || markup.kind == MarkupKind::empty) search.leave(markup);
        if (search.depth < 0) return std::nullopt;
        at = markup.end;
    }
    if (search.depth != 0) return std::nullopt;
    return search.rootSeen ? search.underRoot : search.atTop;
}

std::size_t gf_pieceLength(std::string_view body, std::size_t wanted) {
    i64 depth = 0;
    for (std::size_t at = body.find('<'); at != std::string_view::npos; at = body.find('<', at)) {
        const Markup markup = lf_markupAt(body, at);
        if (markup.kind == MarkupKind::unknown) break;
        if (markup.kind == MarkupKind::start) ++depth;
        if (markup.kind == MarkupKind::end) --depth;
        at = markup.end;
        if (depth == 0 && at >= wanted) return at;
    }
    return body.size();
}

}  // namespace hcr
