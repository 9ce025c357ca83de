// ESLint's check of the scripts the pages carry, src/report/assets/*.js (`npm run lint`). The
// pages run them as classic scripts, so they are linted as such, with the browser's globals.
import { readFileSync } from 'node:fs';
import { basename, dirname, join } from 'node:path';

import js from '@eslint/js';
import globals from 'globals';

// The chart script's pieces in the order src/report/page/page_assets.cpp joins them: the body of one
// strict-mode function, with a blank line between pieces.
const chartPieces = [
  'chart_view.js',
  'chart_axes.js',
  'chart_waveform.js',
  'chart_spectral.js',
  'chart_interaction.js'
];
const chartHead = "(function () {\n  'use strict';\n";
const chartSeparator = '\n';
const chartTail = '})();\n';

function lineCount(text) {
  return text.split('\n').length - 1;
}

// Each piece is linted as part of the whole chart script, the way the page runs it, so a name that
// one piece declares and another uses is checked like any other. Only the messages on the piece's
// own lines (and the line after it, where an unclosed block in it is reported) are kept, moved to
// the piece's line numbers; the other pieces report theirs when they are linted.
const linesOfPiece = new Map();
const chartScript = {
  meta: { name: 'chart-script' },
  preprocess(text, filename) {
    const piece = basename(filename);
    const index = chartPieces.indexOf(piece);
    if (index < 0) throw new Error(`${piece} is not among the chart script's pieces in eslint.config.js`);
    const texts = chartPieces.map((name) =>
      name === piece ? text : readFileSync(join(dirname(filename), name), 'utf8'));
    const before = chartHead + texts.slice(0, index).map((other) => other + chartSeparator).join('');
    linesOfPiece.set(filename, { first: lineCount(before) + 1, last: lineCount(before + text) + 1 });
    return [{ text: chartHead + texts.join(chartSeparator) + chartTail, filename: 'chart.js' }];
  },
  postprocess(messages, filename) {
    const { first, last } = linesOfPiece.get(filename);
    linesOfPiece.delete(filename);
    return messages[0]
      .filter((message) => message.line >= first && message.line <= last)
      .map((message) => ({
        ...message,
        line: message.line - first + 1,
        endLine: message.endLine === undefined ? undefined : message.endLine - first + 1
      }));
  },
  supportsAutofix: false
};

// The scripts, and the whole chart script put together from its pieces.
const scripts = ['src/report/assets/*.js', 'src/report/assets/chart_*.js/*.js'];

export default [
  { files: scripts, ...js.configs.recommended },
  {
    files: scripts,
    languageOptions: { sourceType: 'script', globals: globals.browser },
    rules: {
      // The scripts name the error of a catch clause even where they ignore it, and dropping the
      // name would change every page.
      'no-unused-vars': ['error', { caughtErrors: 'none' }]
    }
  },
  { files: ['src/report/assets/chart_*.js'], processor: chartScript }
];
