  var TEXT_ENTITIES = { '&': '&amp;', '<': '&lt;', '>': '&gt;', '"': '&quot;', "'": '&#39;' };

  function escapeText(text) {
    return String(text).replace(/[&<>"']/g, function (c) { return TEXT_ENTITIES[c]; });
  }

  function coord(value) {
    return value.toFixed(2);
  }

  function svgLine(x1, y1, x2, y2, style) {
    return '<line x1="' + coord(x1) + '" y1="' + coord(y1) + '" x2="' + coord(x2) + '" y2="' +
      coord(y2) + '" ' + style + '/>\n';
  }

  function svgText(x, y, style, content) {
    return '<text x="' + coord(x) + '" y="' + coord(y) + '" ' + style + '>' + content + '</text>\n';
  }

  // A value label right-aligned at x 52, 3 units below its grid line.
  function valueLabel(y, content) {
    return svgText(52, y + 3, 'font-size="9.5" fill="var(--muted)" text-anchor="end"', content);
  }

  function plotAxes(area) {
    var style = 'stroke="var(--ink-soft)" stroke-width="1.4"';
    return svgLine(area.left, area.top, area.left, area.bottom, style) +
      svgLine(area.left, area.bottom, area.right, area.bottom, style);
  }

  function axisTitles(horizontal, horizontalY, vertical, verticalY) {
    var style = 'font-size="10.5" fill="var(--ink-soft)" text-anchor="middle"';
    return svgText(524, horizontalY, style, horizontal) +
      svgText(14, verticalY, style + ' transform="rotate(-90 14 ' + verticalY + ')"', vertical);
  }

  // A clip path of the plot rectangle, so traces of partly visible columns or bins stop at the
  // plot's edges.
  function plotClip(id, area) {
    return '<defs><clipPath id="' + id + '"><rect x="' + coord(area.left) + '" y="' +
      coord(area.top) + '" width="' + coord(area.right - area.left) + '" height="' +
      coord(area.bottom - area.top) + '"/></clipPath></defs>\n';
  }

  // 10^floor(log10 value) times 1, 2, 5 or 10: the smallest that the value does not exceed.
  function niceRange(value) {
    var power = Math.pow(10, Math.floor(Math.log10(value)));
    var ratio = value / power;
    return power * (ratio <= 1 ? 1 : ratio <= 2 ? 2 : ratio <= 5 ? 5 : 10);
  }

  // 10^floor(log10 value) times 1, 2, 5 or 10 as the ratio lies below 1.5, 3, 7 or not.
  function niceRounded(value) {
    var power = Math.pow(10, Math.floor(Math.log10(value)));
    var ratio = value / power;
    return power * (ratio < 1.5 ? 1 : ratio < 3 ? 2 : ratio < 7 ? 5 : 10);
  }

  // About six ticks over low..high: the same two-stage rule (a nice range, then a rounded fifth of
  // it) that spaces the server's linear frequency lines. Each tick is a whole multiple of the step.
  function niceTicks(low, high) {
    var ticks = [];
    if (!(high > low)) return { step: 0, values: ticks };
    var step = niceRounded(niceRange(high - low) / 5);
    var first = Math.ceil(low / step - 1e-9);
    var last = Math.floor(high / step + 1e-9);
    for (var k = first; k <= last && ticks.length < 64; k++) ticks.push(k * step);
    return { step: step, values: ticks };
  }
