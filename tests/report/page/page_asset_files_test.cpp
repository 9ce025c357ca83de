// The page asset texts in the program are the files under src/report/assets byte for byte, and
// every script, style sheet and markup file there is one of them.
#include "report/page/page_asset_texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <string_view>

namespace {

struct EmbeddedFile {
    const char* name;
    const std::string_view* text;
};

const std::array kEmbeddedFiles{
    EmbeddedFile{"theme_tokens.css", &kThemeTokensCss},
    EmbeddedFile{"page.css", &kPageCss},
    EmbeddedFile{"cards.css", &kCardsCss},
    EmbeddedFile{"charts.css", &kChartsCss},
    EmbeddedFile{"theme_toggle.html", &kThemeToggleHtml},
    EmbeddedFile{"theme.js", &kThemeJs},
    EmbeddedFile{"chart_view.js", &kChartViewJs},
    EmbeddedFile{"chart_axes.js", &kChartAxesJs},
    EmbeddedFile{"chart_waveform.js", &kChartWaveformJs},
    EmbeddedFile{"chart_spectral.js", &kChartSpectralJs},
    EmbeddedFile{"chart_interaction.js", &kChartInteractionJs},
    EmbeddedFile{"snapshot_tabs.js", &kSnapshotTabsJs},
    EmbeddedFile{"batch.css", &kBatchCss},
    EmbeddedFile{"batch_table.js", &kBatchTableJs},
};

const std::filesystem::path kAssetsDir = SONALYX_REPORT_ASSETS_DIR;

std::string file_bytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    EXPECT_TRUE(in) << "cannot read " << path;
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// The sizes and the offset of the first differing byte; the texts themselves are too long to
// print usefully.
testing::AssertionResult same_bytes(std::string_view file, std::string_view embedded) {
    if (file == embedded) return testing::AssertionSuccess();
    const auto differ = std::mismatch(file.begin(), file.end(), embedded.begin(), embedded.end());
    return testing::AssertionFailure()
           << "file has " << file.size() << " bytes, embedded text " << embedded.size()
           << "; first difference at byte " << (differ.first - file.begin());
}

TEST(PageAssetFiles, EmbeddedTextsAreTheFilesByteForByte) {
    for (const EmbeddedFile& embedded : kEmbeddedFiles) {
        EXPECT_TRUE(same_bytes(file_bytes(kAssetsDir / embedded.name), *embedded.text))
            << embedded.name;
    }
}

TEST(PageAssetFiles, EveryAssetFileIsEmbedded) {
    std::set<std::string> on_disk;
    for (const auto& entry : std::filesystem::directory_iterator(kAssetsDir)) {
        const std::string extension = entry.path().extension().string();
        if (entry.is_regular_file() &&
            (extension == ".js" || extension == ".css" || extension == ".html")) {
            on_disk.insert(entry.path().filename().string());
        }
    }
    std::set<std::string> embedded;
    for (const EmbeddedFile& file : kEmbeddedFiles)
        embedded.insert(file.name);
    EXPECT_EQ(on_disk, embedded);
}

} // namespace
