  var SPECTRAL_TRACES = [
    { key: 'ref', colour: '--ref-trace' },
    { key: 'dut', colour: '--dut-trace' }
  ];

  function isObject(value) {
    return value !== null && typeof value === 'object';
  }

  function isTierMarkerList(markers) {
    return Array.isArray(markers) && markers.every(function (marker) {
      return isObject(marker) && isNumber(marker.db) && typeof marker.text === 'string' &&
        typeof marker.color === 'string' && typeof marker.dash === 'string' &&
        typeof marker.align === 'string';
    });
  }

  function isPeakList(peaks) {
    return Array.isArray(peaks) && peaks.every(function (peak) {
      return isObject(peak) && isNumber(peak.freqHz) && isNumber(peak.levelDb);
    });
  }

  function isOptionalNumber(value) {
    return value === null || isNumber(value);
  }

  function hasSpectralFields(data) {
    var fail = data.failMarker;
    return isNumber(data.binHz) && data.binHz > 0 && isNumber(data.nyquistHz) &&
      data.nyquistHz > 0 && isNumber(data.freqMinHz) && isNumber(data.dbMin) &&
      isNumber(data.dbMax) && data.dbMax > data.dbMin && isNumberArray(data.ref) &&
      (data.dut === null || isNumberArray(data.dut)) && isOptionalNumber(data.tierNoiseFloorDb) &&
      isOptionalNumber(data.tierNonPeakDb) && isOptionalNumber(data.tierPeakDb) &&
      isTierMarkerList(data.markers) && isPeakList(data.peaks) &&
      (fail === null || (isObject(fail) && isNumber(fail.freqHz) && isNumber(fail.diffDb)));
  }

  // The frequency axis: unit position 0..1 to Hz and back, logarithmic from freqMinHz or linear
  // from 0, both up to nyquistHz.
  function frequencyAxis(data) {
    if (data.freqScale === 'linear') {
      return {
        log: false,
        unit: function (hz) { return hz / data.nyquistHz; },
        hz: function (unit) { return unit * data.nyquistHz; }
      };
    }
    var low = Math.log10(data.freqMinHz);
    var high = Math.log10(data.nyquistHz);
    return {
      log: true,
      unit: function (hz) { return (Math.log10(hz) - low) / (high - low); },
      hz: function (unit) { return Math.pow(10, low + unit * (high - low)); }
    };
  }

  // The spectral data element as a drawing model; null when anything needed is missing.
  function readSpectral(data) {
    var area = readPlotArea(data);
    var scaleKnown = data.freqScale === 'linear' ||
      (data.freqScale === 'log' && data.freqMinHz > 0 && data.nyquistHz > data.freqMinHz);
    if (area === null || !hasSpectralFields(data) || !scaleKnown) return null;
    return { data: data, area: area, axis: frequencyAxis(data) };
  }

  function spectralY(model, db) {
    var data = model.data;
    return (clamp(db, data.dbMin, data.dbMax) - data.dbMin) / (data.dbMin - data.dbMax) *
      (model.area.bottom - model.area.top) + model.area.bottom;
  }

  // Whether a frequency is drawn at all: the log scale leaves out everything below freqMinHz.
  function drawnFrequency(model, hz) {
    return !model.axis.log || hz >= model.data.freqMinHz;
  }

  function spectralX(model, view, hz) {
    return unitToX(model.area, view, model.axis.unit(hz));
  }

  // Rounded to 0.01 Hz, or to 0.01 kHz with a "k" from 1000 Hz up, without trailing zeros.
  function frequencyLabel(hz) {
    if (hz < 1000) return String(Math.round(hz * 100) / 100);
    return String(Math.round(hz / 10) / 100) + 'k';
  }

  // Level lines every 20 dB starting 10 dB below dbMax, each with its label.
  function spectralLevelGrid(model) {
    var area = model.area;
    var markup = '';
    for (var db = model.data.dbMax - 10; db >= model.data.dbMin; db -= 20) {
      var y = spectralY(model, db);
      markup += svgLine(area.left, y, area.right, y,
        'stroke="var(--line-strong)" stroke-width="1" opacity="0.6"') + valueLabel(y, db.toFixed(0));
    }
    return markup;
  }

  // 1, 2 and 5 times each power of ten from 10^-2 to 10^6 inside low..high as major lines, the
  // other integer multiples as minor lines. The ends get a relative tolerance of 1e-9, so a tick
  // standing on an end (20 Hz at full view) is not lost to the rounding of the log mapping.
  function decadeTicks(low, high) {
    var ticks = { major: [], minor: [] };
    for (var exponent = -2; exponent <= 6; exponent++) {
      var power = Math.pow(10, exponent);
      for (var multiple = 1; multiple <= 9; multiple++) {
        var hz = multiple * power;
        if (hz < low * (1 - 1e-9) || hz > high * (1 + 1e-9)) continue;
        var major = multiple === 1 || multiple === 2 || multiple === 5;
        (major ? ticks.major : ticks.minor).push(hz);
      }
    }
    return ticks;
  }

  // Decade ticks on the log scale when the view spans at least one decade, else about six nice
  // ticks without minor lines (always so on the linear scale).
  function frequencyTicks(model, view) {
    var low = model.axis.hz(view.start);
    var high = model.axis.hz(view.end);
    if (model.axis.log && high >= low * 10) return decadeTicks(low, high);
    return { major: niceTicks(low, high).values, minor: [] };
  }

  function spectralFrequencyGrid(model, view) {
    var area = model.area;
    var ticks = frequencyTicks(model, view);
    var markup = '';
    ticks.minor.forEach(function (hz) {
      var x = spectralX(model, view, hz);
      markup += svgLine(x, area.top, x, area.bottom,
        'stroke="var(--line-strong)" stroke-width="1" opacity="0.55"');
    });
    ticks.major.forEach(function (hz) {
      var x = spectralX(model, view, hz);
      markup += svgLine(x, area.top, x, area.bottom,
        'stroke="var(--ink-soft)" stroke-width="1" opacity="0.55"') +
        svgText(x, 290, 'font-size="9.5" fill="var(--muted)" text-anchor="middle"', frequencyLabel(hz));
    });
    return markup;
  }

  function spectralAxes(model) {
    return plotAxes(model.area) + axisTitles('Frequency (Hz)', 304, 'Amplitude (dB)', 144);
  }

  function tierBand(model, upperDb, lowerY) {
    var area = model.area;
    var upperY = spectralY(model, upperDb);
    return '<rect x="' + coord(area.left) + '" y="' + coord(Math.min(upperY, lowerY)) +
      '" width="' + coord(area.right - area.left) + '" height="' + coord(Math.abs(lowerY - upperY)) +
      '" fill="var(--accent)" opacity="0.05"/>';
  }

  // The bands from the noise floor down to the plot bottom and between the low-level signal and
  // peak thresholds, then every tier line with its label, as the server draws them.
  function spectralTiers(model) {
    var data = model.data;
    var area = model.area;
    var markup = '';
    if (data.tierNoiseFloorDb !== null) markup += tierBand(model, data.tierNoiseFloorDb, area.bottom);
    if (data.tierNonPeakDb !== null && data.tierPeakDb !== null) {
      markup += tierBand(model, data.tierPeakDb, spectralY(model, data.tierNonPeakDb));
    }
    data.markers.forEach(function (marker) {
      var y = spectralY(model, marker.db);
      var colour = escapeText(marker.color);
      var labelX = marker.align === 'end' ? area.right - 6 : area.left + 6;
      markup += svgLine(area.left, y, area.right, y, 'stroke="var(' + colour +
        ')" stroke-width="1" stroke-dasharray="' + escapeText(marker.dash) + '"') +
        svgText(labelX, y - 3, 'font-size="10" fill="var(' + colour + ')" text-anchor="' +
        escapeText(marker.align) + '"', escapeText(marker.text));
    });
    return markup;
  }

  // The bins inside the view plus one neighbour on each side, so the line runs to the plot edges
  // (the clip path cuts what lies beyond).
  function spectralPolyline(model, view, levels, style, clipId) {
    var data = model.data;
    var first = Math.max(0, Math.floor(model.axis.hz(view.start) / data.binHz) - 1);
    var last = Math.min(levels.length - 1, Math.ceil(model.axis.hz(view.end) / data.binHz) + 1);
    var points = [];
    for (var k = first; k <= last; k++) {
      var hz = k * data.binHz;
      if (!drawnFrequency(model, hz)) continue;
      points.push(coord(spectralX(model, view, hz)) + ',' + coord(spectralY(model, levels[k])));
    }
    return '<polyline fill="none" stroke="var(' + style.colour + ')" stroke-width="1.5" data-trace="' +
      style.key + '" clip-path="url(#' + clipId + ')" points="' + points.join(' ') + '"/>\n';
  }

  function spectralTraces(model, view, clipId) {
    var markup = '';
    SPECTRAL_TRACES.forEach(function (style) {
      var levels = model.data[style.key];
      if (levels) markup += spectralPolyline(model, view, levels, style, clipId);
    });
    return markup;
  }

  // The level of the DUT trace (the reference when there is no DUT) at the bin nearest `hz`.
  function failingLevel(model, hz) {
    var trace = model.data.dut || model.data.ref;
    if (trace.length === 0) return model.data.dbMax;
    return trace[clamp(Math.round(hz / model.data.binHz), 0, trace.length - 1)];
  }

  // A downward triangle with its tip on the failing point and the "Fail" label in a box above it,
  // kept inside the plot width; about 6 units per character wide, as on the server.
  function spectralFailMarker(model, view) {
    var fail = model.data.failMarker;
    if (fail === null || !drawnFrequency(model, fail.freqHz)) return '';
    var unit = model.axis.unit(fail.freqHz);
    if (unit < view.start || unit > view.end) return '';
    var area = model.area;
    var x = spectralX(model, view, fail.freqHz);
    var y = spectralY(model, failingLevel(model, fail.freqHz));
    var label = 'Fail ' + (fail.diffDb >= 0 ? '+' : '') + fail.diffDb.toFixed(1) + 'dB';
    var width = 6 * label.length + 10;
    var boxX = clamp(x - width / 2, area.left, Math.max(area.left, area.right - width));
    var boxY = Math.max(y - 12 - 16, 0);
    return '<path d="M' + coord(x) + ',' + coord(y) + ' l-5,-9 l10,0 Z" fill="var(--fail)" ' +
      'stroke="var(--fail-line)" stroke-width="1"/>' +
      '<rect x="' + coord(boxX) + '" y="' + coord(boxY) + '" width="' + coord(width) +
      '" height="16" rx="4" fill="var(--fail-soft)" stroke="var(--fail-line)" stroke-width="1"/>' +
      svgText(boxX + width / 2, boxY + 12,
        'font-size="10" font-weight="700" fill="var(--fail)" text-anchor="middle"', label);
  }

  // Each peak inside the view: a dot, a leader line rising from it, the level label above the
  // leader and the frequency label above that.
  function spectralPeaks(model, view) {
    var markup = '';
    model.data.peaks.forEach(function (peak) {
      if (!drawnFrequency(model, peak.freqHz)) return;
      var unit = model.axis.unit(peak.freqHz);
      if (unit < view.start || unit > view.end) return;
      var x = spectralX(model, view, peak.freqHz);
      var y = spectralY(model, peak.levelDb);
      var hzText = peak.freqHz < 1000 ? peak.freqHz.toFixed(0) : (peak.freqHz / 1000).toFixed(2) + 'k';
      markup += '<circle cx="' + coord(x) + '" cy="' + coord(y) + '" r="2.6" fill="var(--accent)"/>' +
        svgLine(x, y - 4, x, y - 11, 'stroke="var(--accent)" stroke-width="1" opacity="0.7"') +
        svgText(x, y - 24, 'font-size="9.5" font-weight="700" fill="var(--ink)" text-anchor="middle"',
          hzText) +
        svgText(x, y - 14, 'font-size="8.5" fill="var(--muted)" text-anchor="middle"',
          peak.levelDb.toFixed(1) + 'dB');
    });
    return markup;
  }

  function drawSpectral(chart) {
    var model = chart.model;
    var view = chart.view;
    var clipId = chart.svg.id + '-plot-clip';
    return plotClip(clipId, model.area) + spectralLevelGrid(model) +
      spectralFrequencyGrid(model, view) + spectralAxes(model) + spectralTiers(model) +
      spectralTraces(model, view, clipId) + spectralFailMarker(model, view) +
      spectralPeaks(model, view);
  }
