// The theme toggle button and the theme script: the effective theme, the saved choice and the
// button's icon and label.
#include "report/page_asset_texts.h"

// Two 24 by 24 stroke icons in currentColor; the style sheet shows the moon until the script marks
// the button with data-icon="sun".
const char kThemeToggleMarkup[] =
    R"html(<button type="button" class="theme-toggle" id="themeToggle" aria-label="Switch to dark theme"><svg class="ti-sun" viewBox="0 0 24 24" width="24" height="24" fill="none" stroke="currentColor" stroke-width="2" stroke-linecap="round" stroke-linejoin="round" aria-hidden="true"><circle cx="12" cy="12" r="4.2"/><path d="M12 2.5v2.2M12 19.3v2.2M2.5 12h2.2M19.3 12h2.2M5.3 5.3l1.55 1.55M17.15 17.15l1.55 1.55M5.3 18.7l1.55-1.55M17.15 6.85l1.55-1.55"/></svg><svg class="ti-moon" viewBox="0 0 24 24" width="24" height="24" fill="none" stroke="currentColor" stroke-width="2" stroke-linecap="round" stroke-linejoin="round" aria-hidden="true"><path d="M20.5 14.2A8.6 8.6 0 0 1 9.8 3.5a8.6 8.6 0 1 0 10.7 10.7z"/></svg></button>
)html";

const char kThemeScript[] = R"js(<script>
(function () {
  'use strict';
  var STORAGE_KEY = 'sonalyx-report-theme';
  var root = document.documentElement;
  var button = document.getElementById('themeToggle');
  var darkQuery = window.matchMedia ? window.matchMedia('(prefers-color-scheme: dark)') : null;

  function isThemeName(value) {
    return value === 'dark' || value === 'light';
  }

  // Storage can be unavailable (privacy settings, sandboxed frames): then nothing is saved.
  function savedTheme() {
    try {
      var value = window.localStorage.getItem(STORAGE_KEY);
      return isThemeName(value) ? value : null;
    } catch (error) {
      return null;
    }
  }

  function saveTheme(theme) {
    try {
      window.localStorage.setItem(STORAGE_KEY, theme);
    } catch (error) {
      // The choice still applies to this page; it just is not remembered.
    }
  }

  function effectiveTheme() {
    var current = root.getAttribute('data-theme');
    if (isThemeName(current)) return current;
    return darkQuery && darkQuery.matches ? 'dark' : 'light';
  }

  function updateButton() {
    if (!button) return;
    var dark = effectiveTheme() === 'dark';
    button.setAttribute('data-icon', dark ? 'sun' : 'moon');
    button.setAttribute('aria-label', dark ? 'Switch to light theme' : 'Switch to dark theme');
  }

  function toggleTheme() {
    var next = effectiveTheme() === 'dark' ? 'light' : 'dark';
    root.setAttribute('data-theme', next);
    saveTheme(next);
    updateButton();
  }

  function followSystemPreference() {
    if (savedTheme() === null) updateButton();
  }

  var saved = savedTheme();
  if (saved !== null) root.setAttribute('data-theme', saved);
  updateButton();
  if (button) button.addEventListener('click', toggleTheme);
  if (darkQuery) {
    if (darkQuery.addEventListener) darkQuery.addEventListener('change', followSystemPreference);
    else if (darkQuery.addListener) darkQuery.addListener(followSystemPreference);
  }
})();
</script>
)js";
