  var CHART_KINDS = {
    waveform: { svgPrefix: 'sx-envelope-svg', dataPrefix: 'sx-envelope-data', read: readWaveform, draw: drawWaveform },
    spectral: { svgPrefix: 'sx-spectral-svg', dataPrefix: 'sx-spectral-data', read: readSpectral, draw: drawSpectral }
  };

  function parseJson(text) {
    try {
      return JSON.parse(text);
    } catch (error) {
      return null;
    }
  }

  // The parsed trace element `id`, read once however many charts draw it; undefined when no
  // element has that id or its JSON does not parse, which every chart kind's reader refuses.
  function traceSet(sets, id) {
    if (!Object.prototype.hasOwnProperty.call(sets, id)) {
      var element = document.getElementById(id);
      var parsed = element ? parseJson(element.textContent) : null;
      sets[id] = parsed === null ? undefined : parsed;
    }
    return sets[id];
  }

  // A chart's data names the elements that hold its traces: the page embeds each distinct trace
  // once. Each name is replaced by the trace it names; an absent DUT stays null.
  function resolveTraces(data, sets) {
    ['ref', 'dut'].forEach(function (key) {
      if (typeof data[key] === 'string') data[key] = traceSet(sets, data[key]);
    });
    return data;
  }

  // The chart of a zoom frame: its svg and the data element whose id carries the same suffix,
  // with its traces; null when any is missing or the data cannot be used (the frame then keeps
  // the server's drawing, which has no traces).
  function findChart(frame, sets) {
    var kind = CHART_KINDS[frame.getAttribute('data-zoom-kind')];
    var svg = frame.querySelector('svg');
    if (!kind || !svg || svg.id.indexOf(kind.svgPrefix) !== 0) return null;
    var element = document.getElementById(kind.dataPrefix + svg.id.slice(kind.svgPrefix.length));
    var data = element ? parseJson(element.textContent) : null;
    var model = data !== null && typeof data === 'object' ? kind.read(resolveTraces(data, sets)) : null;
    if (model === null) return null;
    return { frame: frame, svg: svg, kind: kind, model: model, view: fullView(), drag: null };
  }

  // Hides the traces the svg's data-trace-mode leaves out ("both" when unset).
  function applyTraceMode(svg) {
    var mode = svg.getAttribute('data-trace-mode') || 'both';
    svg.querySelectorAll('[data-trace]').forEach(function (element) {
      var trace = element.getAttribute('data-trace');
      element.style.display = mode === 'both' || mode === trace ? '' : 'none';
    });
  }

  // Replaces the svg's content with a drawing of the current view; the frame's data-view-start and
  // data-view-end attributes tell the view shown.
  function redraw(chart) {
    chart.svg.innerHTML = chart.kind.draw(chart);
    applyTraceMode(chart.svg);
    chart.frame.setAttribute('data-view-start', String(chart.view.start));
    chart.frame.setAttribute('data-view-end', String(chart.view.end));
  }

  function setView(chart, view) {
    chart.view = view;
    redraw(chart);
  }

  // The plot's left edge and width in CSS pixels of the frame: chartLeft and chartRight scaled by
  // the frame width over the view-box width.
  function plotPixels(chart) {
    var rect = chart.frame.getBoundingClientRect();
    var scale = rect.width / VIEW_WIDTH_PX;
    var area = chart.model.area;
    return { rect: rect, left: rect.left + area.left * scale, width: (area.right - area.left) * scale };
  }

  // The pointer's position as a fraction 0..1 of the plot width.
  function plotFraction(plot, clientX) {
    return plot.width > 0 ? clamp((clientX - plot.left) / plot.width, 0, 1) : 0;
  }

  function onWheel(chart, event) {
    event.preventDefault();
    var anchorFraction = plotFraction(plotPixels(chart), event.clientX);
    var anchor = chart.view.start + anchorFraction * (chart.view.end - chart.view.start);
    setView(chart, zoomView(chart.view, anchor, Math.exp(event.deltaY * WHEEL_ZOOM_RATE)));
  }

  function showZoomBox(chart, fromX, toX) {
    var box = chart.frame.querySelector('.zoom-box');
    if (!box) return;
    var rect = chart.frame.getBoundingClientRect();
    box.style.left = (Math.min(fromX, toX) - rect.left) + 'px';
    box.style.width = Math.abs(toX - fromX) + 'px';
    box.hidden = false;
  }

  function hideZoomBox(chart) {
    var box = chart.frame.querySelector('.zoom-box');
    if (box) box.hidden = true;
  }

  function onPointerDown(chart, event) {
    if (event.button !== 0) return;
    chart.drag = { box: event.shiftKey, startX: event.clientX, startView: chart.view };
    if (chart.frame.setPointerCapture) chart.frame.setPointerCapture(event.pointerId);
    event.preventDefault();
  }

  function onPointerMove(chart, event) {
    var drag = chart.drag;
    if (drag === null) return;
    if (drag.box) {
      showZoomBox(chart, drag.startX, event.clientX);
      return;
    }
    var plot = plotPixels(chart);
    if (plot.width > 0) setView(chart, panView(drag.startView, (event.clientX - drag.startX) / plot.width));
  }

  // A box wider than BOX_MIN_PX pixels zooms to the part of the start view under it (clamped to
  // the plot) when that part spans more than BOX_MIN_SPAN. The box's view is taken as it is,
  // without the wheel's minimum span.
  function finishBox(chart, drag, endX) {
    hideZoomBox(chart);
    if (Math.abs(endX - drag.startX) <= BOX_MIN_PX) return;
    var plot = plotPixels(chart);
    var view = subView(drag.startView, plotFraction(plot, drag.startX), plotFraction(plot, endX));
    if (view.end - view.start > BOX_MIN_SPAN) setView(chart, view);
  }

  function onPointerUp(chart, event) {
    var drag = chart.drag;
    chart.drag = null;
    if (drag !== null && drag.box) finishBox(chart, drag, event.clientX);
  }

  function bindChart(chart) {
    var frame = chart.frame;
    frame.addEventListener('wheel', function (event) { onWheel(chart, event); }, { passive: false });
    frame.addEventListener('pointerdown', function (event) { onPointerDown(chart, event); });
    frame.addEventListener('pointermove', function (event) { onPointerMove(chart, event); });
    frame.addEventListener('pointerup', function (event) { onPointerUp(chart, event); });
    frame.addEventListener('pointercancel', function () {
      chart.drag = null;
      hideZoomBox(chart);
    });
    frame.addEventListener('dblclick', function () { setView(chart, fullView()); });
  }

  function bindResetButtons(charts) {
    document.querySelectorAll('.zoom-reset[data-zoom-target]').forEach(function (button) {
      var chart = charts[button.getAttribute('data-zoom-target')];
      if (chart) button.addEventListener('click', function () { setView(chart, fullView()); });
    });
  }

  // The clicked button is marked active (plus ref-active or dut-active), the others are cleared.
  function selectTraceButton(buttons, chosen) {
    buttons.forEach(function (button) {
      var mode = button.getAttribute('data-mode');
      var active = button === chosen;
      button.classList.toggle('active', active);
      button.classList.toggle('ref-active', active && mode === 'ref');
      button.classList.toggle('dut-active', active && mode === 'dut');
    });
  }

  function bindTraceToggles() {
    document.querySelectorAll('.trace-toggle[data-target]').forEach(function (toggle) {
      var frame = document.getElementById(toggle.getAttribute('data-target'));
      var svg = frame ? frame.querySelector('svg') : null;
      if (!svg) return;
      var buttons = Array.prototype.slice.call(toggle.querySelectorAll('button[data-mode]'));
      buttons.forEach(function (button) {
        button.addEventListener('click', function () {
          svg.setAttribute('data-trace-mode', button.getAttribute('data-mode'));
          selectTraceButton(buttons, button);
          applyTraceMode(svg);
        });
      });
    });
  }

  function start() {
    var charts = {};
    var sets = {};
    document.querySelectorAll('.zoom-frame[data-zoom-kind]').forEach(function (frame) {
      var chart = findChart(frame, sets);
      if (chart === null) return;
      if (frame.id) charts[frame.id] = chart;
      redraw(chart);
      bindChart(chart);
    });
    bindResetButtons(charts);
    bindTraceToggles();
  }

  start();
