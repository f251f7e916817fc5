// A headless browser for the tests, without a network, and what tests ask of every page.
import { existsSync, readFileSync } from "node:fs";
import { createRequire } from "node:module";
import assert from "node:assert/strict";
import { chromium } from "playwright-core";

const axeSource = readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");

const program = ["/usr/bin/chromium", "/usr/bin/chromium-headless-shell"].find(existsSync);

export const openBrowser = () => chromium.launch({
  executablePath: program,
  args: ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
    "--disable-component-update", "--disable-sync"],
});

// A page that fails the test when it asks for anything but itself, or when its script throws.
export async function openPage(browser, url, options = {}) {
  const context = await browser.newContext({ viewport: { width: 1200, height: 900 }, ...options });
  const page = await context.newPage(), trouble = [];
  page.on("pageerror", error => trouble.push(String(error)));
  page.on("dialog", dialog => { trouble.push("a dialog: " + dialog.message()); dialog.dismiss(); });
  page.on("request", request => { if (/^(https?|wss?):/.test(request.url())) trouble.push("asked for " + request.url()); });
  await page.goto(url);
  return { page, trouble };
}

// What a screen reader or a keyboard would stumble over.
export async function accessibilityProblems(page) {
  await page.evaluate(axeSource);
  const { violations } = await page.evaluate(() => globalThis.axe.run({ resultTypes: ["violations"] }));
  return violations.map(v => v.id + ": " + v.nodes.map(n => n.target.join(" ")).slice(0, 5).join(", "));
}

export async function assertNoOverflow(page, width) {
  await page.setViewportSize({ width, height: 800 });
  const wide = await page.evaluate(() => document.documentElement.scrollWidth - innerWidth);
  assert.ok(wide <= 0, `at ${width} pixels the page is ${wide} too wide`);
}

// The list follows the address a moment later than the key or the click that changes it.
export const waitForCount = (page, start) => page.waitForFunction(
  wanted => document.getElementById("count").textContent.startsWith(wanted), start, { timeout: 10000 });
