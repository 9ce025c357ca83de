(function () {
  'use strict';
  var table = document.getElementById('batch-table');
  if (!table) return;
  var body = table.tBodies[0];
  var rows = Array.prototype.slice.call(body.rows);
  var filter = document.getElementById('batch-filter');
  var verdict = document.getElementById('batch-verdict');
  var shown = document.getElementById('batch-shown');
  var headers = table.querySelectorAll('thead th[data-kind]');
  var sorted = { column: -1, descending: false };

  rows.forEach(function (row, index) { row.setAttribute('data-order', String(index)); });

  // A number column sorts by each cell's data-value; a cell without one (a figure the pair does
  // not have) stays below the others in both directions.
  function key(row, column, numeric) {
    var cell = row.cells[column];
    if (!numeric) return cell.textContent.trim().toLowerCase();
    var value = cell.getAttribute('data-value');
    return value === null || value === '' ? null : Number(value);
  }

  function compare(a, b, column, numeric) {
    var x = key(a, column, numeric);
    var y = key(b, column, numeric);
    if (x === null || y === null) return (x === null) - (y === null);
    var order = x < y ? -1 : (x > y ? 1 : 0);
    if (sorted.descending) order = -order;
    return order || Number(a.getAttribute('data-order')) - Number(b.getAttribute('data-order'));
  }

  function sortBy(header) {
    var column = header.cellIndex;
    var numeric = header.getAttribute('data-kind') === 'number';
    sorted.descending = sorted.column === column ? !sorted.descending : false;
    sorted.column = column;
    rows.sort(function (a, b) { return compare(a, b, column, numeric); });
    rows.forEach(function (row) { body.appendChild(row); });
    headers.forEach(function (other) {
      var state = sorted.descending ? 'descending' : 'ascending';
      other.setAttribute('aria-sort', other === header ? state : 'none');
    });
  }

  function applyFilter() {
    var text = filter.value.trim().toLowerCase();
    var wanted = verdict.value;
    var count = 0;
    rows.forEach(function (row) {
      var match = (wanted === '' || row.getAttribute('data-verdict') === wanted) &&
        (text === '' || row.textContent.toLowerCase().indexOf(text) >= 0);
      row.hidden = !match;
      if (match) count += 1;
    });
    shown.textContent = count + ' of ' + rows.length + ' pairs shown';
  }

  headers.forEach(function (header) {
    header.querySelector('button').addEventListener('click', function () { sortBy(header); });
  });
  filter.addEventListener('input', applyFilter);
  verdict.addEventListener('change', applyFilter);
  applyFilter();
})();
