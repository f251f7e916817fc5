// The report page that `infraconvert audit --report` writes, in a real browser.
import { after, before, test } from "node:test";
import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { accessibilityProblems, assertNoOverflow, openBrowser, openPage, waitForCount } from "./browser.mjs";

const command = process.env.INFRACONVERT, place = mkdtempSync(join(tmpdir(), "report-"));
let browser;
before(async () => { browser = await openBrowser(); });
after(async () => { await browser?.close(); rmSync(place, { recursive: true }); });

function writeReport(name, texts, more = []) {
  const files = Object.entries(texts).map(([file, text]) => { writeFileSync(join(place, file), text); return file; });
  const run = spawnSync(command, ["audit", "--from", "4.1(2)", "--to", "5.0(2)", "--report", name, ...more, "--", ...files],
    { cwd: place, encoding: "utf8", maxBuffer: 1 << 28 });
  assert.ok([0, 4, 5].includes(run.status), run.stderr);
  return "file://" + join(place, name);
}

const marking = (policy, place_ = "interface Ethernet1/1") => `class-map voice
  match cos 5
policy-map ${policy}
  class voice
    set qos-group 2
${place_}
  service-policy input ${policy}
`;
const unattached = policy => "feature lldp\n" + marking(policy); // loses its attachment: IC041
const small = {
  "a.cfg": "npiv enable\n  description </script><b>bold</b><img src=x onerror=alert(1)> npiv enable\n\u0007\n",
  "b.cfg": "feature lldp\n",
  "c.cfg": "npiv enable",
  "d.cfg": marking("campus"),
  "e.cfg": marking("campus"),
  "f.cfg": "\0",
};

const names = page => page.$$eval("#list > details .name", list => list.map(e => e.textContent));
const count = page => page.textContent("#count");

test("the list is filtered by the address, and Back works", async () => {
  const url = writeReport("small.html", small), { page, trouble } = await openPage(browser, url);
  assert.deepEqual(await names(page), ["f.cfg", "d.cfg and 1 alike", "a.cfg", "c.cfg", "b.cfg"]);
  const rows = [["service=npiv", "2 of 6"], ["state=unusable", "1 of 6"], ["needs=hands", "3 of 6"], ["text=E1/1%0A", "0 of 6"],
    ["text=campus", "2 of 6"], ["text=A.C", "1 of 6"]];
  for (const [hash, wanted] of rows) {
    await page.goto(url + "#" + hash);
    await waitForCount(page, wanted);
  }
  await page.goto(url);
  const code = (await page.textContent("#causes .code")).trim();
  await page.fill("[name=text]", "campus");
  await page.click("#causes .code");
  assert.equal(await page.inputValue("[name=code]"), code);
  assert.equal(await page.inputValue("[name=text]"), "", "a click on a code replaces the filter");
  await page.goBack();
  assert.equal(await page.inputValue("[name=text]"), "campus");
  await page.click(".tile.hands");
  await waitForCount(page, "3 of 6");
  assert.match(await count(page), /^3 of 6 .* need hands$/);
  assert.deepEqual(trouble, []);
});

test("markup and control bytes of a configuration, its name and exceptions are shown as they are", async () => {
  const markup = "<img src=x onerror=alert(1)>", name = `</script>${markup}.cfg`.replaceAll("/", "\u2215");
  writeFileSync(join(place, "agreed"), `IC041 | * | * | ${markup} | 2099-12-31\nIC030 | ${markup} | ${markup} |\n`);
  const url = writeReport("markup.html", { "a.cfg": small["a.cfg"], [name]: unattached("<b>bold</b>"), [markup]: "\0" },
    ["--accept", "@agreed", "--via", "4.2(1)"]);
  const { page, trouble } = await openPage(browser, url);
  await page.evaluate(() => dispatchEvent(new Event("beforeprint")));
  const shown = await page.textContent("main");
  for (const text of ["</script><b>bold</b>" + markup, "\u2407", name, "Reason: " + markup, "IC030 for " + markup]) assert.ok(shown.includes(text), text);
  assert.equal(await page.$("main b:not(.tile b), main img, main script"), null);
  assert.deepEqual(trouble, []);
});

test("what was agreed on stands apart, exceptions without use and the steps of a route are told", async () => {
  writeFileSync(join(place, "agreed"), "IC041 | d.cfg | interface * | moves to the campus | 2099-12-31\n" +
    "IC041 | e.cfg | * | | 2001-01-01\nIC030 | nowhere.cfg\n");
  const url = writeReport("agreed.html", { ...small, "d.cfg": unattached("p"), "e.cfg": unattached("p") }, ["--accept", "@agreed", "--via", "4.2(1)"]);
  const { page, trouble } = await openPage(browser, url);
  assert.deepEqual(await page.$$eval("#exceptions li", list => list.map(e => e.textContent)), [
    "agreed, line 2: the exception IC041 for e.cfg expired after 2001-01-01", "agreed, line 3: the exception IC030 for nowhere.cfg meets nothing"]);
  await page.click(".tile.agreed");
  await waitForCount(page, "1 of 6");
  assert.match(await page.textContent("#list > details summary"), /d\.cfg.*1 agreed/);
  assert.equal(await page.$("#list .finding.error"), null);
  const agreed = await page.textContent("#list .folded:not([open])");
  for (const text of ["IC041", "Reason: moves to the campus, until 2099-12-31", "step 4.1(2) \u2192 4.2(1)"]) assert.ok(agreed.includes(text), text);
  assert.match(await page.textContent("#list .diff .rule"), /^step 4\.1\(2\) \u2192 4\.2\(1\): IC-QOS/);
  assert.equal(await page.textContent("#list .services tbody tr:last-child td"), "4.2(1) \u2192 5.0(2)");
  assert.match(await page.textContent("#codes"), /Of these agreed/);
  assert.deepEqual([trouble, await accessibilityProblems(page)], [[], []]);
});

test("changed words are marked, a rule explains itself, a line of a finding leads to its place", async () => {
  const { page } = await openPage(browser, writeReport("words.html", small) + "#text=d.cfg");
  const marks = await page.$$eval(".diff mark", list => list.map(e => e.textContent));
  assert.ok(marks.includes("type") && marks.includes("qos"), String(marks));
  await page.click(".diff .rule summary");
  assert.match(await page.textContent(".diff .rule details"), /untyped class-maps/);
  await page.click("#list .lines [data-line]");
  assert.ok(await page.$(".diff tr.found"));
});

test("the keyboard alone is enough", async () => {
  const { page } = await openPage(browser, writeReport("keys.html", small));
  await page.keyboard.press("j");
  await page.keyboard.press("j");
  await page.keyboard.press("Enter");
  assert.equal(await page.$$eval("#list > details[open]", list => list.length), 1);
  const outline = await page.evaluate(() => getComputedStyle(document.activeElement).outlineStyle);
  assert.equal(outline, "solid", "the focus is seen");
  await page.keyboard.press("/");
  await page.keyboard.type("lldp");
  await waitForCount(page, "0 of 6");
  await page.keyboard.press("Escape");
  await waitForCount(page, "6 of 6");
});

test("narrow and wide, light and dark, nothing hinders reading", async () => {
  for (const colorScheme of ["light", "dark"]) {
    const { page } = await openPage(browser, writeReport("wide.html", small) + "#text=d.cfg", { colorScheme });
    assert.deepEqual(await accessibilityProblems(page), [], colorScheme);
    for (const width of [320, 768, 1200]) await assertNoOverflow(page, width);
  }
});

test("on paper everything is open", async () => {
  const { page } = await openPage(browser, writeReport("paper.html", small));
  await page.evaluate(() => dispatchEvent(new Event("beforeprint")));
  assert.equal(await page.$$eval("#list details:not([open])", list => list.length), 0);
  assert.equal(await page.$$eval("#list > details:not(:has(.body))", list => list.length), 0);
  assert.ok((await page.pdf()).length > 10000);
});

test("a thousand configurations are there at once", async () => {
  const many = Object.fromEntries(Array.from({ length: 1000 }, (_, i) => [`sw${i}.cfg`, `hostname sw${i}\n` + marking("p" + i % 7)]));
  const { page } = await openPage(browser, writeReport("many.html", many));
  assert.match(await count(page), /^1000 of 1000/);
  assert.equal(await page.$$eval("#list > details", list => list.length), 7);
  await page.goto(page.url() + "#text=sw77.cfg");
  await waitForCount(page, "1 of 1000");
});
