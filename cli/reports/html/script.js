
'use strict';
// The page can be read without this: it searches, counts what is shown, and adds keys.
const all = selector => [...document.querySelectorAll(selector)];
const search = document.getElementById('search');
const shown = document.getElementById('shown');
const boxes = all('.tools input[type=checkbox]');
const parts = all('.part').map(part => ({ part, rows: [...part.querySelectorAll('tbody tr')] }));
let texts; // of all rows

all('.script').forEach(element => { element.hidden = false; });

// A changed box hides the rows that its value selects: the style sheet does it. Asking for layout would cost seconds.
function isShown(row) {
  return !row.hidden && !boxes.some(box => box.checked !== box.defaultChecked && row.matches(box.value));
}

function count() {
  const counts = { finding: 0, name: 0 };
  for (const { part, rows } of parts) {
    const visible = rows.filter(isShown).length;
    counts[part.closest('.matrix') ? 'name' : 'finding'] += visible;
    part.hidden = visible === 0;
  }
  shown.textContent = Object.entries(counts).filter(([word]) => word === 'finding' || document.querySelector('.matrix'))
    .map(([word, n]) => `${n.toLocaleString('en')} ${word}${n === 1 ? '' : 's'}`).join(', ');
}

function filter() {
  texts ??= new Map(parts.flatMap(({ rows }) => rows).map(row => [row, row.textContent.toLowerCase()]));
  const words = search.value.toLowerCase().split(/\s+/).filter(Boolean);
  texts.forEach((text, row) => { row.hidden = !words.every(word => text.includes(word)); });
  count();
}

const explained = () => document.querySelector('article:target');
const rowOf = article => document.getElementById('r' + article.id.slice(1));

function nextShown(row, step) {
  const names = parts.filter(({ part }) => part.closest('.matrix')).flatMap(({ rows }) => rows);
  const from = names.indexOf(row);
  const rest = step > 0 ? names.slice(from + 1) : names.slice(0, from).reverse();
  return rest.find(isShown);
}

function close() {
  const link = rowOf(explained()).querySelector('a');
  const { scrollX, scrollY } = window;
  location.replace('#names');
  window.scrollTo(scrollX, scrollY);
  link.focus({ preventScroll: true });
}

let pending;
search.addEventListener('input', () => {
  cancelAnimationFrame(pending);
  pending = requestAnimationFrame(filter);
});
boxes.forEach(box => box.addEventListener('change', count));

document.addEventListener('click', event => {
  if (event.target.matches('article > a')) {
    event.preventDefault();
    close();
  }
});
function mark() {
  all('.explained').forEach(row => row.classList.remove('explained'));
  const article = explained();
  if (article) {
    rowOf(article).classList.add('explained');
    rowOf(article).scrollIntoView({ block: 'nearest' });
  }
}
window.addEventListener('hashchange', mark);

document.addEventListener('keydown', event => {
  if (event.ctrlKey || event.altKey || event.metaKey) {
    return;
  }
  const article = explained();
  const row = event.target.closest('.matrix tbody tr');
  const step = { ArrowDown: 1, ArrowUp: -1, n: 1, p: -1 }[event.key];
  let other;
  if (event.key === 'Escape' && article) {
    close();
  } else if (event.key === 'Escape' && event.target === search) {
    search.value = '';
    filter();
  } else if (event.target === search) {
    return;
  } else if (event.key === '/') {
    search.focus();
    search.select();
  } else if (step && event.key.length > 1 && row && (other = nextShown(row, step))) {
    other.querySelector('a').focus();
  } else if (step && event.key.length === 1 && article && (other = nextShown(rowOf(article), step))) {
    other.querySelector('a').click();
  } else {
    return;
  }
  event.preventDefault();
});
count();
mark();
