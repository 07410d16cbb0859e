#include "network/multipart.h"

#include "frame/errors.h"
#include "frame/values/large_memory.h"
#include "frame/values/text.h"

#include <algorithm>

namespace orvane::multipart {

void append(std::u16string& form, std::initializer_list<WStringView> pieces) {
    const std::size_t limit = std::min(kLongestText, form.max_size());
    std::size_t length = form.size();
    for (const WStringView piece : pieces) {
        if (piece.size() > limit - length) raise(error::kOutOfMemory);
        length += piece.size();
    }
    if (length > form.capacity()) {
        std::u16string larger =
            textWithRoom(std::max(length, std::min(form.capacity() * 2, limit)));
        larger += form;
        form.swap(larger);
    }
    for (const WStringView piece : pieces)
        form += piece;
}

}  // namespace orvane::multipart
