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
