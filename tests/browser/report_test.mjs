// Opens HTML reports in headless Chromium: nothing wider than the page on a telephone, a tablet and
// a desktop, nothing on the console, readable contrast in light and dark, links that lead somewhere,
// and a print on A4. With a folder as argument, pictures of the reports are kept there.
//
//   PROPORTIONS=build/bin/proportions node tests/browser/report_test.mjs [FOLDER]
import { execFileSync } from "node:child_process";
import { mkdtempSync, rmSync, statSync, writeFileSync, mkdirSync } from "node:fs";
import { tmpdir } from "node:os";
import { dirname, join, resolve } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import assert from "node:assert/strict";
import { chromium } from "playwright-core";

const root = resolve(dirname(fileURLToPath(import.meta.url)), "../..");
const program = resolve(process.env.PROPORTIONS ?? join(root, "build/bin/proportions"));
const browserPath = process.env.CHROMIUM ?? "/usr/bin/chromium";
const pictures = process.argv[2] ? resolve(process.argv[2]) : null;
const folder = mkdtempSync(join(tmpdir(), "proportions-browser-"));
const widths = [360, 800, 1600];
const a4 = Math.round(((210 - 2 * 15) / 25.4) * 96); // pixels between the margins

const example = (name, ...options) =>
  [join(root, "examples", `${name}.csv`), "-f", join(root, "examples", `${name}.txt`), ...options];

function write(name, text) {
  const path = join(folder, name);
  writeFileSync(path, text);
  return path;
}

// Names, labels and values that would act in the page if they became markup.
function nasty() {
  const script = "<script>document.title='run';console.log('run')</script>";
  const label = `<img src=x onerror="console.error('run')"> & ${script} a label that is so long that it has to be broken`;
  const data = write("nasty.csv", `x,"${script.replaceAll('"', '""')}"\n1,a\n0,"<b onclick=alert(1)>"\n1,a\n1,"""'>"\n`);
  write("nasty.schema.json", JSON.stringify({
    fields: [{ name: "x", type: "integer", title: label, categories: [{ value: 1, label: `</td></table>${label}` }] },
             { name: script, type: "string" }],
  }));
  return [data, "-c", `PROPORTIONS /ONESAMPLE x CITYPES=ALL TESTTYPES=ALL.\nPROPORTIONS /ONESAMPL x.`, "--split", script];
}

function manyPairs(variables, cases) {
  let state = 12345;
  const bit = () => ((state = (state * 1103515245 + 12345) % 2147483648) >> 16) & 1;
  const rows = [Array.from({ length: variables }, (_, i) => `v${i + 1}`).join(",")];
  for (let i = 0; i < cases; ++i) rows.push(Array.from({ length: variables }, bit).join(","));
  return [write("pairs.csv", rows.join("\n") + "\n"), "-c", "PROPORTIONS /PAIREDSAMPLES ALL."];
}

function report(name, options) {
  const path = join(folder, `${name}.html`);
  let status = 0;
  try {
    execFileSync(program, [...options, "-o", path], { stdio: ["ignore", "ignore", "pipe"] });
  } catch (error) {
    status = error.status;
  }
  assert.ok(status === 0 || (status === 1 && name === "nasty"), `${name}: exit status ${status}`);
  return path;
}

// In the page: what is wider than it, and text that is hard to read.
function findOverflow(limit) {
  return document.documentElement.scrollWidth > limit
    ? [`the page is ${document.documentElement.scrollWidth} pixels wide`]
    : [];
}

function findPoorContrast() {
  const channels = (color) => color.match(/[\d.]+/g).map(Number);
  const luminance = ([r, g, b]) => {
    const [x, y, z] = [r, g, b].map((c) => ((c /= 255) <= 0.03928 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4));
    return 0.2126 * x + 0.7152 * y + 0.0722 * z;
  };
  const background = (element) => {
    for (let at = element; at; at = at.parentElement) {
      const color = channels(getComputedStyle(at).backgroundColor);
      if (color.length < 4 || color[3] > 0) return color;
    }
    return [255, 255, 255];
  };
  const poor = new Set();
  const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
  for (let node = walker.nextNode(), seen = 0; node && seen < 3000; node = walker.nextNode()) {
    if (!node.data.trim()) continue;
    ++seen;
    const element = node.parentElement, style = getComputedStyle(element);
    const ink = channels(element.namespaceURI.endsWith("svg") ? style.fill : style.color);
    const [a, b] = [luminance(ink), luminance(background(element))];
    const ratio = (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);
    if (ratio < 4.5) poor.add(`${element.tagName}.${element.className?.baseVal ?? element.className}: ${ratio.toFixed(2)}`);
  }
  return [...poor];
}

function findBrokenLinks() {
  const ids = [...document.querySelectorAll("[id]")].map((element) => element.id);
  const known = new Set(ids);
  const broken = ids.length === known.size ? [] : ["an id is used twice"];
  for (const link of document.querySelectorAll('a[href^="#"]')) {
    if (!known.has(link.getAttribute("href").slice(1))) broken.push(link.outerHTML);
  }
  return broken;
}

function countStructure() {
  const count = (selector) => document.querySelectorAll(selector).length;
  return {
    scripts: count("script"),
    images: count("img"),
    handlers: [...document.querySelectorAll("*")].filter((e) => [...e.attributes].some((a) => /^on/i.test(a.name))).length,
    tables: count("table"),
    unscoped: [...document.querySelectorAll("th")].filter((th) => !th.scope).length,
    plots: count("svg[role=img] > title"),
    bars: count("svg circle"),
  };
}

async function check(browser, name, options, expected) {
  const path = report(name, options);
  const said = [];
  const context = await browser.newContext();
  const page = await context.newPage();
  page.on("console", (message) => said.push(message.text()));
  page.on("pageerror", (error) => said.push(String(error)));
  page.on("requestfailed", (request) => said.push(`${request.url()} was asked for`));
  const start = Date.now();
  await page.goto(pathToFileURL(path).href);
  const seconds = (Date.now() - start) / 1000;

  for (const scheme of ["light", "dark"]) {
    await page.emulateMedia({ colorScheme: scheme });
    for (const width of widths) {
      await page.setViewportSize({ width, height: 900 });
      assert.deepEqual(await page.evaluate(findOverflow, width), [], `${name}, ${width} pixels`);
      if (pictures) await page.screenshot({ path: join(pictures, `${name}-${scheme}-${width}.png`) });
    }
    assert.deepEqual(await page.evaluate(findPoorContrast), [], `${name}, ${scheme}`);
  }
  assert.deepEqual(await page.evaluate(findBrokenLinks), [], name);

  await page.emulateMedia({ media: "print", colorScheme: "light" });
  await page.setViewportSize({ width: a4, height: 1000 });
  assert.deepEqual(await page.evaluate(findOverflow, a4), [], `${name}, printed`);
  if (pictures) await page.screenshot({ path: join(pictures, `${name}-print.png`), fullPage: !expected.large });
  if (!expected.large) {
    const pdf = await page.pdf({ preferCSSPageSize: true });
    assert.ok(pdf.toString("latin1").startsWith("%PDF"), name);
    if (pictures) writeFileSync(join(pictures, `${name}.pdf`), pdf);
  }

  const structure = await page.evaluate(countStructure);
  assert.equal(structure.scripts + structure.images + structure.handlers, 0, name);
  assert.equal(structure.unscoped, 0, name);
  assert.equal(structure.plots, expected.plots, `${name}: plots`);
  if (expected.bars !== undefined) assert.equal(structure.bars, expected.bars, `${name}: intervals drawn`);
  assert.equal(await page.title(), "Binomial proportions");
  assert.deepEqual(said, [], `${name}: the console`);
  const megabytes = statSync(path).size / 1e6;
  console.log(`${name}: ${megabytes.toFixed(2)} MB, opened in ${seconds.toFixed(2)} s, ${structure.tables} tables`);
  if (expected.large) {
    assert.ok(megabytes <= 60, `${name}: ${megabytes} MB`);
    // The seconds are printed to be read; what is refused is a browser that hangs.
    assert.ok(seconds <= Number(process.env.SECONDS_TO_OPEN ?? 60), `${name}: opened in ${seconds} s`);
  }
  await context.close();
}

if (pictures) mkdirSync(pictures, { recursive: true });
const browser = await chromium.launch({
  executablePath: browserPath,
  args: ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
         "--disable-component-update", "--disable-sync"],
});
try {
  await check(browser, "peas", example("peas"), { plots: 1, bars: 9 });
  await check(browser, "airway", example("airway"), { plots: 1, bars: 5 });
  await check(browser, "physicians", example("physicians_health", "--weight", "freq"), { plots: 1, bars: 7 });
  await check(browser, "admissions",
              example("admissions", "--weight", "freq", "--split", "department", "--split-layout", "tables"), { plots: 6 });
  await check(browser, "nasty", nasty(), { plots: 1 });
  await check(browser, "pairs", manyPairs(142, 400), { plots: 1, bars: 200, large: true });
} finally {
  await browser.close();
  rmSync(folder, { recursive: true, force: true });
}
