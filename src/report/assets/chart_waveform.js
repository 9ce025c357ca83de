  var WAVEFORM_TRACES = [
    { key: 'ref', colour: '--ref-trace', opacity: '0.85' },
    { key: 'dut', colour: '--dut-trace', opacity: '0.55' }
  ];

  function isEnvelopeTrace(trace) {
    return trace !== null && typeof trace === 'object' && isNumberArray(trace.min) &&
      isNumberArray(trace.max) && isNumberArray(trace.valid) &&
      trace.min.length === ENVELOPE_COLUMNS && trace.max.length === ENVELOPE_COLUMNS &&
      trace.valid.length === ENVELOPE_COLUMNS;
  }

  function isMarkerList(markers) {
    return Array.isArray(markers) && markers.every(function (marker) {
      return marker !== null && typeof marker === 'object' && typeof marker.label === 'string' &&
        isNumber(marker.frac);
    });
  }

  // The envelope data element as a drawing model; null when anything needed is missing.
  function readWaveform(data) {
    var area = readPlotArea(data);
    if (area === null || !isNumber(data.sampleRate) || data.sampleRate <= 0 ||
        !isNumber(data.totalFrames) || data.totalFrames < 0 ||
        (data.yScale !== 'db' && data.yScale !== 'amp') || !isNumber(data.dbMin) ||
        !isNumber(data.dbMax) || data.dbMax <= data.dbMin || !isEnvelopeTrace(data.ref) ||
        (data.dut !== null && !isEnvelopeTrace(data.dut)) || !isMarkerList(data.markers)) {
      return null;
    }
    return { data: data, area: area, seconds: data.totalFrames / data.sampleRate };
  }

  function waveformY(model, value) {
    var area = model.area;
    var data = model.data;
    if (data.yScale === 'db') {
      return (clamp(value, data.dbMin, data.dbMax) - data.dbMin) / (data.dbMin - data.dbMax) *
        (area.bottom - area.top) + area.bottom;
    }
    var half = (area.bottom - area.top) / 2;
    return clamp(value, -AMP_MAX, AMP_MAX) / -AMP_MAX * half + (area.top + half);
  }

  function valueRow(model, value, opacity, label) {
    var y = waveformY(model, value);
    return svgLine(model.area.left, y, model.area.right, y,
      'stroke="var(--ink-soft)" stroke-width="1" opacity="' + opacity + '"') + valueLabel(y, label);
  }

  // Every 20 dB from dbMax down to dbMin, or -1.2 to +1.2 in steps of 0.2 with the zero line
  // stronger. The amplitude values are whole multiples of 0.2, so the zero line is exactly 0 and
  // reads "0.0": only positive values get a plus sign.
  function waveformValueGrid(model) {
    var markup = '';
    if (model.data.yScale === 'db') {
      for (var level = model.data.dbMax; level >= model.data.dbMin; level -= 20) {
        markup += valueRow(model, level, '0.55', level.toFixed(0));
      }
      return markup;
    }
    for (var step = 6; step >= -6; step--) {
      var value = step * 0.2;
      markup += valueRow(model, value, step === 0 ? '0.9' : '0.55',
        (value > 0 ? '+' : '') + value.toFixed(1));
    }
    return markup;
  }

  // "1:05" (whole minutes, two-digit seconds, rounded to whole seconds first) for a file of 60 s
  // or longer, else seconds with one decimal and "s".
  function timeLabel(seconds, minutes) {
    if (!minutes) return seconds.toFixed(1) + 's';
    var whole = Math.round(seconds);
    var rest = whole % 60;
    return Math.floor(whole / 60) + ':' + (rest < 10 ? '0' : '') + rest;
  }

  // Nice time ticks over the visible seconds with their labels, and three minor lines between
  // neighbouring ticks.
  function waveformTimeGrid(model, view) {
    var area = model.area;
    var seconds = model.seconds;
    if (!(seconds > 0)) return '';
    var ticks = niceTicks(view.start * seconds, view.end * seconds);
    var minorStyle = 'stroke="var(--line-strong)" stroke-width="1" opacity="0.5"';
    var majorStyle = 'stroke="var(--ink-soft)" stroke-width="1" opacity="0.5"';
    var labelStyle = 'font-size="9.5" fill="var(--muted)" text-anchor="middle"';
    var markup = '';
    ticks.values.forEach(function (time, index) {
      for (var quarter = 1; index > 0 && quarter < 4; quarter++) {
        var minorX = unitToX(area, view, (time - ticks.step * quarter / 4) / seconds);
        markup += svgLine(minorX, area.top, minorX, area.bottom, minorStyle);
      }
      var x = unitToX(area, view, time / seconds);
      markup += svgLine(x, area.top, x, area.bottom, majorStyle) +
        svgText(x, 170, labelStyle, timeLabel(time, seconds >= 60));
    });
    return markup;
  }

  // The columns that overlap the view, as a first and last index.
  function visibleColumns(view) {
    var first = clamp(Math.floor(view.start * ENVELOPE_COLUMNS), 0, ENVELOPE_COLUMNS - 1);
    var last = clamp(Math.ceil(view.end * ENVELOPE_COLUMNS) - 1, first, ENVELOPE_COLUMNS - 1);
    return { first: first, last: last };
  }

  // The outline over the visible columns: the maxima left to right, each gap (an invalid column)
  // closing the current piece; then the minima right to left for the last piece only, walking back
  // from the last visible column until the first gap. Over the full view this is the outline of
  // all 4096 columns; off-view columns are never visited, so the last visible column plays the
  // part of column 4095.
  function ribbonOutline(model, view, trace) {
    var columns = visibleColumns(view);
    var edgeX = function (edge) { return coord(unitToX(model.area, view, edge / ENVELOPE_COLUMNS)); };
    var outline = '';
    var inPiece = false;
    for (var i = columns.first; i <= columns.last; i++) {
      if (trace.valid[i]) {
        var y = coord(waveformY(model, trace.max[i]));
        outline += inPiece ? 'L' + edgeX(i + 1) + ',' + y + ' '
          : 'M' + edgeX(i) + ',' + y + ' L' + edgeX(i + 1) + ',' + y + ' ';
        inPiece = true;
      } else if (inPiece) {
        outline += 'Z ';
        inPiece = false;
      }
    }
    if (!trace.valid[columns.last]) return outline;
    for (var j = columns.last; j >= columns.first && trace.valid[j]; j--) {
      outline += 'L' + edgeX(j) + ',' + coord(waveformY(model, trace.min[j])) + ' ';
    }
    return outline + 'Z ';
  }

  function waveformRibbons(model, view, clipId) {
    var markup = '';
    WAVEFORM_TRACES.forEach(function (style) {
      var trace = model.data[style.key];
      if (!trace) return;
      markup += '<path fill="var(' + style.colour + ')" fill-opacity="' + style.opacity +
        '" stroke="none" data-trace="' + style.key + '" clip-path="url(#' + clipId + ')" d="' +
        ribbonOutline(model, view, trace) + '"/>';
    });
    return markup;
  }

  // A dashed line over the plot height with its rotated label, for each marker inside the view
  // (a fraction above 1 stands at the right end, as on the server).
  function waveformMarkers(model, view) {
    var area = model.area;
    var markup = '';
    model.data.markers.forEach(function (marker) {
      var frac = Math.min(marker.frac, 1);
      if (frac < view.start || frac > view.end) return;
      var x = unitToX(area, view, frac);
      var labelX = coord(x + 3);
      markup += svgLine(x, area.top, x, area.bottom,
        'stroke="var(--fail)" stroke-width="1" stroke-dasharray="3,2"') +
        '<text x="' + labelX + '" y="12.00" font-size="9" fill="var(--fail)" transform="rotate(-90 ' +
        labelX + ' 12.00)" text-anchor="start">' + escapeText(marker.label) + '</text>';
    });
    return markup;
  }

  function drawWaveform(chart) {
    var model = chart.model;
    var view = chart.view;
    var clipId = chart.svg.id + '-plot-clip';
    return plotClip(clipId, model.area) + plotAxes(model.area) + waveformValueGrid(model) +
      waveformTimeGrid(model, view) +
      axisTitles('Time (s)', 184, model.data.yScale === 'db' ? 'Amplitude (dB)' : 'Amplitude', 83) +
      waveformRibbons(model, view, clipId) + waveformMarkers(model, view);
  }
