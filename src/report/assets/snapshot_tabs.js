(function (widgetId) {
  'use strict';
  var widget = document.getElementById(widgetId);
  if (!widget) return;
  var tabs = widget.querySelectorAll('.snap-tab[data-snap-idx]');
  var panels = widget.querySelectorAll('.snap-panel[data-snap-idx]');

  function select(index) {
    tabs.forEach(function (tab) {
      var chosen = tab.getAttribute('data-snap-idx') === index;
      tab.classList.toggle('active', chosen);
      tab.setAttribute('aria-selected', chosen ? 'true' : 'false');
    });
    panels.forEach(function (panel) {
      panel.hidden = panel.getAttribute('data-snap-idx') !== index;
    });
  }

  tabs.forEach(function (tab) {
    tab.addEventListener('click', function () { select(tab.getAttribute('data-snap-idx')); });
  });
})