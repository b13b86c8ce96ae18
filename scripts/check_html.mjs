// Looks at HTML reports in Chromium: check_html.mjs MODULES SMALL LARGE [PICTURES]
// MODULES is the folder with puppeteer-core and axe-core; PICTURES a folder for screenshots. SMALL and LARGE are reports
// with names, some of which have more than one definition. Prints a line for each thing looked at; fails when one is
// not as it should be.
import { createRequire } from 'node:module';
import { resolve } from 'node:path';
import { readFileSync, writeFileSync } from 'node:fs';

const [modules, small, large, pictures] = process.argv.slice(2).map(path => resolve(path));
const require = createRequire(`${modules}/`);
const { default: puppeteer } = await import(require.resolve('puppeteer-core'));
const axe = readFileSync(require.resolve('axe-core/axe.min.js'), 'utf8');
const mostSeconds = 2; // to open LARGE

let failed = 0;
function expect(what, actual, wanted) {
  const isSo = typeof wanted === 'function' ? wanted(actual) : JSON.stringify(actual) === JSON.stringify(wanted);
  console.log(`${isSo ? 'ok' : 'NOT OK'}: ${what}: ${JSON.stringify(actual)}`);
  failed += isSo ? 0 : 1;
}

const browser = await puppeteer.launch({
  executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
  args: process.getuid() === 0 ? ['--no-sandbox'] : [],
});
const complaints = []; // of the page: requests, errors, messages

async function newPage(scripts = true) {
  const page = await browser.newPage();
  await page.setViewport({ width: 1440, height: 900 });
  await page.setJavaScriptEnabled(scripts);
  page.on('console', message => complaints.push(message.text()));
  page.on('pageerror', error => complaints.push(String(error)));
  page.on('request', request => {
    if (!/^(file|data):/.test(request.url())) {
      complaints.push(`asks for ${request.url()}`);
    }
  });
  return page;
}

const drawn = page => page.evaluate(() => new Promise(done => requestAnimationFrame(() => setTimeout(done))));
async function seconds(page, path) {
  const begin = performance.now();
  await page.goto(`file://${path}`);
  await drawn(page);
  return (performance.now() - begin) / 1000;
}
const median = values => values.sort((a, b) => a - b)[Math.floor(values.length / 2)];
const count = (page, selector) => page.$$eval(selector, found =>
  found.filter(element => element.checkVisibility({ contentVisibilityAuto: false })).length);
const text = (page, selector) => page.$eval(selector, element => element.textContent);
const focused = page => page.evaluate(() => document.activeElement.textContent || document.activeElement.id);
const picture = async (page, name) => pictures && page.screenshot({ path: `${pictures}/${name}.png` });

async function opensSoon() {
  const page = await newPage();
  const empty = `${small}.empty.html`;
  writeFileSync(empty, '<!DOCTYPE html><title>empty</title>');
  const times = { empty: [], large: [] };
  for (let i = 0; i < 5; ++i) {
    times.empty.push(await seconds(page, empty));
    times.large.push(await seconds(page, large));
  }
  const names = (await page.$$('.matrix tbody tr')).length;
  console.log(`${names} names; an empty page opens in ${median(times.empty).toFixed(2)} s`);
  expect('seconds to open', +median(times.large).toFixed(2), time => time <= mostSeconds);
  const begin = performance.now();
  await page.type('#search', 'e');
  await drawn(page);
  expect('seconds to search', +((performance.now() - begin) / 1000).toFixed(2), time => time <= mostSeconds);
  await picture(page, 'large');
  await page.click('nav a[href="#names"]');
  await drawn(page);
  expect('the names are in view', await page.$eval('#names', heading => Math.round(heading.getBoundingClientRect().top)),
    top => top >= 0 && top < 400);
  await picture(page, 'large-names');
  await page.close();
}

async function filters(page) {
  const all = await count(page, '.matrix tbody tr');
  const hiding = (await page.$$('.matrix tbody tr:not(.only)')).length;
  expect('names, and those with more than one definition', [all, hiding], ([a, h]) => a > h && h > 0);
  await page.click('#box-only');
  expect('names with "hidden only"', await count(page, '.matrix tbody tr'), hiding);
  expect('they are counted', await text(page, '#shown'), words => words.includes(`${hiding} name`));
  await page.click('#box-only');
  const box = await page.$eval('.tools input[type=checkbox]', element => element.id);
  const level = box.replace('box-', '');
  const before = await count(page, '.findings tbody tr');
  const gone = await count(page, `.findings .${level}`);
  await page.click(`#${box}`);
  expect(`findings without ${level}s`, await count(page, '.findings tbody tr'), before - gone);
  await page.click(`#${box}`);
}

async function searchAndKeys(page) {
  const names = await page.$$eval('.matrix tbody th', found => found.map(element => element.textContent));
  await page.keyboard.press('/');
  await page.keyboard.type(names[1].toUpperCase());
  await drawn(page);
  const found = names.filter(name => name.includes(names[1])).length;
  expect(`names with ${names[1]}`, await count(page, '.matrix tbody tr'), n => n >= found && n < names.length);
  await page.keyboard.press('Escape');
  await drawn(page);
  expect('names after Escape', await count(page, '.matrix tbody tr'), names.length);

  await page.focus('.matrix tbody a');
  await page.keyboard.press('ArrowDown');
  expect('the next name', await focused(page), names[1]);
  await page.keyboard.press('Enter');
  const explanation = () => text(page, 'article:target pre');
  expect('is explained', (await explanation()).split('\n')[0], names[1]);
  await page.keyboard.press('n');
  await page.keyboard.press('n');
  await page.keyboard.press('p');
  expect('then the next', (await explanation()).split('\n')[0], names[2]);
  await picture(page, 'explained');
  await page.keyboard.press('Escape');
  expect('closed', [(await page.$$('article:target')).length, await focused(page)], [0, names[2]]);
  await page.click('.findings tbody a[href^="#n"]');
  expect('a finding leads to an explanation', await count(page, 'article:target'), 1);
  await page.click('article:target a');
  expect('closed by a click', await count(page, 'article:target'), 0);
}

async function isAccessible(page, what) {
  await page.evaluate(axe);
  const { violations } = await page.evaluate(() => window.axe.run());
  const words = violations.map(({ id, impact, nodes }) => `${impact} ${id} (${nodes.length}): ${nodes[0].html.slice(0, 80)}`);
  words.filter(word => !/^(serious|critical)/.test(word)).forEach(word => console.log(`   ${word}`));
  expect(`axe-core, ${what}`, words.filter(word => /^(serious|critical)/.test(word)), []);
}

async function looks() {
  const page = await newPage();
  for (const scheme of ['light', 'dark']) {
    await page.emulateMediaFeatures([{ name: 'prefers-color-scheme', value: scheme }]);
    for (const [width, name] of [[1440, 'wide'], [360, 'narrow']]) {
      await page.setViewport({ width, height: 800 });
      await page.goto(`file://${small}`);
      await picture(page, `${scheme}-${name}`);
      await isAccessible(page, `${scheme}, ${name}`);
      expect('no scrolling sideways', await page.evaluate(() => document.documentElement.scrollWidth), width);
      await page.$eval('#names', element => element.scrollIntoView());
      await picture(page, `${scheme}-${name}-names`);
      await page.$eval('.matrix tbody a', link => link.click());
      await isAccessible(page, `${scheme}, ${name}, explained`);
    }
  }
  await page.close();
}

// As wide as A4 is between its margins. Each file gets a tab of its own: Chromium paints LARGE for minutes,
// and what is opened in the same tab waits for that.
async function isWholeInPrint() {
  for (const path of [large, small]) {
    const page = await newPage();
    await page.emulateMediaType('print');
    await page.setViewport({ width: 1032, height: 700 });
    await page.goto(`file://${path}`);
    expect('cut off in print', await page.evaluate(() => [...document.querySelectorAll('th, td, th span')]
      .filter(cell => cell.clientWidth > 0 && cell.scrollWidth > cell.clientWidth + 1)
      .map(cell => cell.outerHTML.slice(0, 80)).slice(0, 3)), []);
    expect('width in print', await page.evaluate(() => document.documentElement.scrollWidth), 1032);
    if (path === small) {
      const print = await page.pdf({ path: pictures && `${pictures}/print.pdf`, preferCSSPageSize: true });
      expect('bytes printed', print.length, size => size > 10000);
    }
    await page.close();
  }
}

async function isReadableWithoutScript() {
  const page = await newPage(false);
  await page.goto(`file://${small}#n1`);
  expect('without script: findings, names, an explanation, a search field',
    [await count(page, '.findings tbody tr') > 0, await count(page, '.matrix tbody tr') > 0,
      await count(page, 'article:target'), await count(page, '#search')], [true, true, 1, 0]);
  await page.close();
}

const page = await newPage();
await page.goto(`file://${small}`);
await filters(page);
await searchAndKeys(page);
await page.close();
await looks();
await isWholeInPrint();
await isReadableWithoutScript();
await opensSoon();
expect('requests that leave, errors, messages', complaints, []);
await browser.close();
process.exit(failed ? 1 : 0);
