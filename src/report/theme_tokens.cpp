// The colour tokens of the light and dark themes and the font tokens of the page.
#include "report/page_asset_texts.h"

#include <array>

namespace {

constexpr std::array kTokens{
    ThemeToken{"--bg", "#eef1f4", "#0e1318"},
    ThemeToken{"--surface", "#ffffff", "#161d24"},
    ThemeToken{"--surface-sunken", "#f4f6f8", "#10151a"},
    ThemeToken{"--ink", "#131a22", "#e7edf2"},
    ThemeToken{"--ink-soft", "#55636f", "#9aa8b3"},
    ThemeToken{"--muted", "#8b96a1", "#5c6b78"},
    ThemeToken{"--line", "#e1e6eb", "#232c35"},
    ThemeToken{"--line-strong", "#cbd3da", "#303b45"},
    ThemeToken{"--accent", "#0b7285", "#35b6c4"},
    ThemeToken{"--accent-ink", "#ffffff", "#051417"},
    ThemeToken{"--accent-soft", "#e1f3f4", "#12292c"},
    ThemeToken{"--logo-accent", "#2952cc", "#6f92f2"},
    ThemeToken{"--ref", "#FF7F0E", nullptr},
    ThemeToken{"--dut", "#1F77B4", nullptr},
    ThemeToken{"--pass", "#2E7D32", "#6fbf73"},
    ThemeToken{"--pass-soft", "#e6f2e6", "#142a17"},
    ThemeToken{"--pass-line", "#b9d8b8", "#2b4a2e"},
    ThemeToken{"--fail", "#C62828", "#e2857b"},
    ThemeToken{"--fail-soft", "#fbe8e6", "#2c1815"},
    ThemeToken{"--fail-line", "#edb6ae", "#55302a"},
    ThemeToken{"--gate", "#a5610f", "#e3a25c"},
    ThemeToken{"--gate-bg", "#f6e9d7", "#2a2114"},
    ThemeToken{"--gauge-mid", "#e8c93a", "#e8c93a"},
    ThemeToken{"--gauge-good", "#b08a10", "#d9b23c"},
    ThemeToken{"--gauge-poor-soft", "#e8a29c", "#7a453f"},
    ThemeToken{"--gauge-fair-soft", "#e8c896", "#7a5f3a"},
    ThemeToken{"--gauge-mid-soft", "#e8dc96", "#7a7040"},
    ThemeToken{"--gauge-good-soft", "#a8cfa0", "#4a6b4a"},
    ThemeToken{"--ref-trace", "var(--ref)", nullptr},
    ThemeToken{"--dut-trace", "var(--dut)", nullptr},
    ThemeToken{"--shadow",
               "0 1px 2px rgba(20, 30, 40, 0.06), 0 6px 20px -8px rgba(20, 30, 40, 0.12)",
               "0 1px 2px rgba(0,0,0,0.4), 0 8px 24px -10px rgba(0,0,0,0.5)"},
    ThemeToken{"--font-display",
               "\"SF Pro Rounded\", \"Nunito\", \"Varela Round\", ui-rounded, -apple-system, "
               "sans-serif",
               nullptr},
    ThemeToken{"--font-body",
               "-apple-system, BlinkMacSystemFont, \"Segoe UI\", system-ui, sans-serif", nullptr},
    ThemeToken{"--font-data", "ui-monospace, \"SF Mono\", \"Cascadia Mono\", Menlo, monospace",
               nullptr},
};

} // namespace

std::span<const ThemeToken> theme_tokens() {
    return kTokens;
}
