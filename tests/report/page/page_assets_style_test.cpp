// The style sheet: both themes' colour tokens with their exact values, the font tokens, and a rule
// for every class the page writers emit.
#include "text_buffer_fixture.h"

#include "report/page/page_assets.h"

#include <cctype>
#include <string>
#include <utility>
#include <vector>

namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

// The value of every token the light theme declares on :root.
const Pairs kLightTokens = {
    {"--bg", "#eef1f4"},
    {"--surface", "#ffffff"},
    {"--surface-sunken", "#f4f6f8"},
    {"--ink", "#131a22"},
    {"--ink-soft", "#55636f"},
    {"--muted", "#8b96a1"},
    {"--line", "#e1e6eb"},
    {"--line-strong", "#cbd3da"},
    {"--accent", "#0b7285"},
    {"--accent-ink", "#ffffff"},
    {"--accent-soft", "#e1f3f4"},
    {"--logo-accent", "#2952cc"},
    {"--ref", "#FF7F0E"},
    {"--dut", "#1F77B4"},
    {"--pass", "#2E7D32"},
    {"--pass-soft", "#e6f2e6"},
    {"--pass-line", "#b9d8b8"},
    {"--fail", "#C62828"},
    {"--fail-soft", "#fbe8e6"},
    {"--fail-line", "#edb6ae"},
    {"--gate", "#a5610f"},
    {"--gate-bg", "#f6e9d7"},
    {"--gauge-mid", "#e8c93a"},
    {"--gauge-good", "#b08a10"},
    {"--gauge-poor-soft", "#e8a29c"},
    {"--gauge-fair-soft", "#e8c896"},
    {"--gauge-mid-soft", "#e8dc96"},
    {"--gauge-good-soft", "#a8cfa0"},
    {"--ref-trace", "var(--ref)"},
    {"--dut-trace", "var(--dut)"},
    {"--shadow", "0 1px 2px rgba(20, 30, 40, 0.06), 0 6px 20px -8px rgba(20, 30, 40, 0.12)"},
};

// The tokens the dark theme overrides; the others keep their light value.
const Pairs kDarkTokens = {
    {"--bg", "#0e1318"},
    {"--surface", "#161d24"},
    {"--surface-sunken", "#10151a"},
    {"--ink", "#e7edf2"},
    {"--ink-soft", "#9aa8b3"},
    {"--muted", "#5c6b78"},
    {"--line", "#232c35"},
    {"--line-strong", "#303b45"},
    {"--accent", "#35b6c4"},
    {"--accent-ink", "#051417"},
    {"--accent-soft", "#12292c"},
    {"--logo-accent", "#6f92f2"},
    {"--pass", "#6fbf73"},
    {"--pass-soft", "#142a17"},
    {"--pass-line", "#2b4a2e"},
    {"--fail", "#e2857b"},
    {"--fail-soft", "#2c1815"},
    {"--fail-line", "#55302a"},
    {"--gate", "#e3a25c"},
    {"--gate-bg", "#2a2114"},
    {"--gauge-mid", "#e8c93a"},
    {"--gauge-good", "#d9b23c"},
    {"--gauge-poor-soft", "#7a453f"},
    {"--gauge-fair-soft", "#7a5f3a"},
    {"--gauge-mid-soft", "#7a7040"},
    {"--gauge-good-soft", "#4a6b4a"},
    {"--shadow", "0 1px 2px rgba(0,0,0,0.4), 0 8px 24px -10px rgba(0,0,0,0.5)"},
};

const char* const kLightOnly[] = {"--ref", "--dut", "--ref-trace", "--dut-trace"};

// Every class the page writers emit.
const char* const kClasses[] = {
    "dash",
    "topbar",
    "brand",
    "glyph",
    "name",
    "right",
    "meta",
    "theme-toggle",
    "signal-row",
    "signal-id",
    "dut",
    "single",
    "tag",
    "fname",
    "signal-meta",
    "kpi-grid",
    "kpi",
    "verdict",
    "ok",
    "k",
    "v",
    "kpi-sub",
    "kpi-note",
    "nav-tabs",
    "card",
    "card-head",
    "htext",
    "sub",
    "badge",
    "pass",
    "fail",
    "info",
    "card-body",
    "desc",
    "tile-row",
    "card-row-gap",
    "tile",
    "tile-wide",
    "pct",
    "v-sub",
    "delta",
    "diffrate-bar",
    "diffrate-bar-track",
    "diffrate-bar-fill",
    "diffrate-bar-label",
    "align-gauge",
    "align-gauge-track",
    "align-gauge-pointer",
    "align-gauge-value",
    "align-gauge-num",
    "align-gauge-word",
    "align-gauge-caption",
    "poor",
    "fair",
    "good",
    "excellent",
    "compare-table",
    "compare-table-wrap",
    "compare-table-title",
    "loudness-delta-label",
    "dt",
    "overflow-x",
    "spectral-rollup",
    "fail-detail",
    "spectral-snap-tabs",
    "snap-tab",
    "active",
    "snap-tab-dot",
    "snap-tab-db",
    "spectral-snap-panels",
    "snap-panel",
    "scope",
    "overview",
    "scope-head",
    "title",
    "zoom-toolbar",
    "zoom-hint",
    "trace-toggle",
    "ref-active",
    "dut-active",
    "zoom-reset",
    "zoom-frame",
    "zoom-box",
    "legend-row",
    "sw",
    "chart-note",
    "channel-gallery-heading",
    "run-error",
    "footer-row-top",
    "footer-row-tester",
};

class StyleSheet : public TextBufferTest {
  protected:
    void SetUp() override {
        TextBufferTest::SetUp();
        ASSERT_TRUE(append_style_sheet(buffer));
        sheet = content();
    }

    // The declarations between "<selector> {\n" and the next "}".
    std::string block(const std::string& selector) const {
        const std::string opening = selector + " {\n";
        const std::size_t start = sheet.find(opening);
        if (start == std::string::npos) return {};
        const std::size_t body = start + opening.size();
        return sheet.substr(body, sheet.find('}', body) - body);
    }

    // Whether the sheet uses ".name" as a class selector: not followed by another name character.
    bool has_class_selector(const std::string& name) const {
        const std::string selector = "." + name;
        for (std::size_t at = sheet.find(selector); at != std::string::npos;
             at = sheet.find(selector, at + 1)) {
            const char next = sheet[at + selector.size()];
            if (std::isalnum(static_cast<unsigned char>(next)) == 0 && next != '-' && next != '_') {
                return true;
            }
        }
        return false;
    }

    std::string sheet;
};

TEST_F(StyleSheet, IsOneStyleElement) {
    EXPECT_EQ(sheet.rfind("<style>\n", 0), 0U);
    EXPECT_EQ(sheet.substr(sheet.size() - 9), "</style>\n");
    EXPECT_EQ(sheet.find("<style>", 1), std::string::npos);
}

TEST_F(StyleSheet, LightThemeDeclaresEveryTokenOnRoot) {
    const std::string light = block(":root");
    ASSERT_FALSE(light.empty());
    for (const auto& [name, value] : kLightTokens) {
        EXPECT_NE(light.find("  " + name + ": " + value + ";\n"), std::string::npos) << name;
    }
}

TEST_F(StyleSheet, DarkThemeOverridesItsTokensUnderDataTheme) {
    const std::string dark = block(":root[data-theme=\"dark\"]");
    ASSERT_FALSE(dark.empty());
    for (const auto& [name, value] : kDarkTokens) {
        EXPECT_NE(dark.find("  " + name + ": " + value + ";\n"), std::string::npos) << name;
    }
    for (const char* name : kLightOnly) {
        EXPECT_EQ(dark.find(std::string("  ") + name + ":"), std::string::npos) << name;
    }
}

TEST_F(StyleSheet, UnchosenThemeFollowsADarkSystemPreference) {
    const std::string media = "@media (prefers-color-scheme: dark) {\n"
                              ":root:not([data-theme=\"light\"]) {\n";
    const std::size_t start = sheet.find(media);
    ASSERT_NE(start, std::string::npos);
    const std::string preferred =
        sheet.substr(start + media.size(), sheet.find('}', start) - start - media.size());
    EXPECT_EQ(preferred, block(":root[data-theme=\"dark\"]"));
}

TEST_F(StyleSheet, FontTokens) {
    const std::string light = block(":root");
    const std::size_t display = light.find("  --font-display: ");
    ASSERT_NE(display, std::string::npos);
    const std::string line = light.substr(display, light.find('\n', display) - display + 1);
    const std::string ending = "ui-rounded, -apple-system, sans-serif;\n";
    EXPECT_EQ(line.substr(line.size() - ending.size()), ending);
    EXPECT_NE(light.find("  --font-body: -apple-system, BlinkMacSystemFont, \"Segoe UI\", "
                         "system-ui, sans-serif;\n"),
              std::string::npos);
    EXPECT_NE(light.find("  --font-data: ui-monospace, \"SF Mono\", \"Cascadia Mono\", Menlo, "
                         "monospace;\n"),
              std::string::npos);
}

TEST_F(StyleSheet, EveryEmittedClassHasARule) {
    for (const char* name : kClasses) {
        EXPECT_TRUE(has_class_selector(name)) << name;
    }
}

TEST_F(StyleSheet, HiddenAttributeReallyHides) {
    EXPECT_NE(sheet.find("[hidden] { display: none !important; }"), std::string::npos);
}

TEST_F(StyleSheet, NavigationMarksFailingAndNonGatingLinks) {
    EXPECT_NE(sheet.find(".nav-tabs a[data-fail] {"), std::string::npos);
    EXPECT_NE(sheet.find(".nav-tabs a[data-nongating] {"), std::string::npos);
}

TEST_F(StyleSheet, GaugeWordsTakeTheGaugeColours) {
    EXPECT_NE(sheet.find(".align-gauge-word.poor { color: var(--fail); }"), std::string::npos);
    EXPECT_NE(sheet.find(".align-gauge-word.good { color: var(--gauge-good); }"),
              std::string::npos);
    EXPECT_NE(sheet.find(".align-gauge-word.excellent { color: var(--pass); }"), std::string::npos);
}

} // namespace
