#include "network/BuildForm.h"

#include "frame/values/conversions.h"
#include "network/multipart.h"

namespace orvane {
namespace {

/// The upper bound of an array that a host made empty.
constexpr std::int32_t kNoElements = -1;

void addHeader(WString& headers) {
    const bool open = !headers.empty() && !headers.view().ends_with(multipart::kLineEnd);
    multipart::append(headers.edit(),
                      {open ? multipart::kLineEnd : WStringView(), multipart::kHeader});
}

}  // namespace

WString BuildForm(WString& headersToUpdate, const Array<Variant>& arguments) {
    if (arguments.upperBound() == kNoElements) return u"";
    const std::uint32_t count = arguments.bounds().front().count;
    if (count % 2 != 0) return u"";
    std::u16string form;
    multipart::append(form, {u"--", multipart::kBoundary});
    const std::int64_t lower = arguments.lowerBound();
    for (std::uint32_t place = 0; place < count; place += 2) {
        const auto index = static_cast<std::int32_t>(lower + place);
        const WString name = toText(arguments.at(index));
        const WString value = toText(arguments.at(index + 1));
        multipart::append(form, {multipart::kLineEnd, multipart::kDisposition, name, u"\"\r\n\r\n",
                                 value, u"\r\n--", multipart::kBoundary});
    }
    multipart::append(form, {u"--"});
    addHeader(headersToUpdate);
    return form;
}

}  // namespace orvane
