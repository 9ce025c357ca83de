// The small texts the page heads and signal rows derive from the run: the title stem of a path,
// the format and channel words, and the UTC timestamp of the footer.
#include "report/page/page_frame.h"

#include "audio/audio.h"

#include <array>
#include <ctime>

namespace {

constexpr std::size_t kMaxTitleStemBytes = 255;

} // namespace

std::string report_title_stem(std::string_view path) {
    const std::size_t separator = path.find_last_of("/\\");
    std::string_view name = separator == std::string_view::npos ? path : path.substr(separator + 1);
    const std::size_t dot = name.rfind('.');
    // A name whose only dot leads it (a hidden file) keeps the dot.
    if (dot != std::string_view::npos && dot != 0) name = name.substr(0, dot);
    return std::string(name.substr(0, kMaxTitleStemBytes));
}

const char* format_word(std::uint32_t format) {
    switch (format) {
    case kWavFormatInt16:
        return "16-bit";
    case kWavFormatInt24:
        return "24-bit";
    case kWavFormatInt32:
        return "32-bit";
    case kWavFormatFloat32:
        return "32-bit float";
    case kWavFormatFloat64:
        return "64-bit float";
    default:
        return "unknown";
    }
}

const char* channel_word(std::uint32_t channels) {
    // Every count other than two, more than two included, is shown as "Mono".
    return channels == 2 ? "Stereo" : "Mono";
}

std::string utc_timestamp() {
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    std::array<char, 32> text{};
    if (gmtime_r(&now, &utc) == nullptr) return {};
    const std::size_t length =
        std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S UTC", &utc);
    return std::string(text.data(), length);
}
