  var VIEW_WIDTH_PX = 1000;      // width of every chart's SVG view box
  var MIN_SPAN_FRAC = 0.002;     // smallest visible part of the full range
  var AMP_MAX = 1.2;             // amplitude limit of the linear waveform scale
  var WHEEL_ZOOM_RATE = 0.0015;  // one wheel event scales the view by exp(deltaY * rate)
  var BOX_MIN_PX = 4;            // a box zoom must be wider than this many pixels
  var BOX_MIN_SPAN = 0.0005;     // and span more than this part of the unit range
  var ENVELOPE_COLUMNS = 4096;   // columns of every waveform envelope

  function clamp(value, low, high) {
    return Math.min(Math.max(value, low), high);
  }

  function fullView() {
    return { start: 0, end: 1 };
  }

  // A view of width `span` (at most the whole range) starting at `start`, shifted back inside 0..1.
  function placeView(start, span) {
    var width = Math.min(span, 1);
    var first = clamp(start, 0, 1 - width);
    return { start: first, end: first + width };
  }

  // At least `minSpan` wide around the same midpoint, then shifted back inside 0..1.
  function clampView(view, minSpan) {
    var span = Math.max(view.end - view.start, minSpan);
    var middle = (view.start + view.end) / 2;
    return placeView(middle - span / 2, span);
  }

  // Both ends move away from (factor above 1) or towards the fixed point `anchor`.
  function zoomView(view, anchor, factor) {
    var zoomed = {
      start: anchor - (anchor - view.start) * factor,
      end: anchor + (view.end - anchor) * factor
    };
    return clampView(zoomed, MIN_SPAN_FRAC);
  }

  // Moves the view by `fraction` of its own span, keeping the span.
  function panView(view, fraction) {
    var span = view.end - view.start;
    return placeView(view.start - fraction * span, span);
  }

  // The part of `view` between the plot fractions `from` and `to` (each 0..1).
  function subView(view, from, to) {
    var span = view.end - view.start;
    return { start: view.start + Math.min(from, to) * span, end: view.start + Math.max(from, to) * span };
  }

  function isNumber(value) {
    return typeof value === 'number' && isFinite(value);
  }

  function isNumberArray(value) {
    return Array.isArray(value) && value.every(isNumber);
  }

  // The plot rectangle in SVG units; null when the data does not describe one.
  function readPlotArea(data) {
    if (!isNumber(data.chartLeft) || !isNumber(data.chartRight) || !isNumber(data.chartTop) ||
        !isNumber(data.chartBottom) || data.chartRight <= data.chartLeft ||
        data.chartBottom <= data.chartTop) {
      return null;
    }
    return { left: data.chartLeft, right: data.chartRight, top: data.chartTop, bottom: data.chartBottom };
  }

  // x of the unit position `unit` while `view` fills the plot width.
  function unitToX(area, view, unit) {
    return area.left + (unit - view.start) / (view.end - view.start) * (area.right - area.left);
  }
