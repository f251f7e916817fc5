// infraconvert.html in a real browser: the same answers as the command, and how it is used.
import { after, before, test } from "node:test";
import assert from "node:assert/strict";
import { mkdirSync, mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { createServer } from "node:http";
import { tmpdir } from "node:os";
import { basename, dirname, join } from "node:path";
import { accessibilityProblems, assertNoOverflow, openBrowser, openPage, waitForCount } from "./browser.mjs";
import { runNative } from "./native.mjs";

const patience = { timeout: 240000 }; // for a machine that does much else
const url = "file://" + process.env.INFRACONVERT_PAGE, golden = process.env.GOLDEN_DIRECTORY;
const place = mkdtempSync(join(tmpdir(), "page-"));
let browser;
before(async () => { browser = await openBrowser(); });
after(async () => { await browser?.close(); rmSync(place, { recursive: true }); });

// What two runs at different times tell alike.
const undated = text => text.replace(/"date": ?"[^"]*"/, "");

const goldenCases = readdirSync(golden, { recursive: true }).filter(path => basename(path) === "in.cfg").map(path => {
  const [service, pair] = path.split("/"), [from, to] = pair.split("__");
  return { path, service, from, to, bytes: readFileSync(join(golden, path)) };
});

// What the page's own workers make of the same words and files.
const runInPage = (page, words, files) => page.evaluate(async ([list, given]) => {
  const bytes = Object.fromEntries(Object.entries(given).map(([path, text]) => [path, Uint8Array.from(atob(text), c => c.charCodeAt(0))]));
  const { status, output, messages } = await workers.ask("run", { words: list, files: bytes });
  let text = "";
  for (const byte of output) text += String.fromCharCode(byte);
  return { status, output: text, messages };
}, [words, Object.fromEntries(Object.entries(files).map(([path, bytes]) => [path, Buffer.from(bytes).toString("base64")]))]);

test("every golden conversion: results, findings, logs of failures and JSON are those of the command", async () => {
  const { page, trouble } = await openPage(browser, url);
  assert.ok(goldenCases.length > 30);
  for (const { path, service, from, to, bytes } of goldenCases) {
    for (const words of [
      ["preview", "--json", "--keep-going", "--mend", "--service", service, "--from", from, "--to", to, "in.cfg"],
      ["audit", "--json", "--details", "--from", from, "--to", to, "in.cfg"],
      ["audit", "--json", "--rollback", "--from", from, "--to", to, "in.cfg"],
      ["effects", "--json", "--from", from, "--to", to, "in.cfg"],
    ]) {
      const [own, native] = [await runInPage(page, words, { "in.cfg": bytes }), runNative(words, { "in.cfg": bytes })].map(
        run => ({ ...run, output: undated(run.output) }));
      assert.deepEqual(own, native, path + ": " + words.join(" "));
    }
  }
  assert.deepEqual(trouble, []);
});

const marking = policy => `class-map voice
  match cos 5
policy-map ${policy}
  class voice
    set qos-group 2
interface Ethernet1/1
  service-policy input ${policy}
`;
const unattached = policy => "feature lldp\n" + marking(policy); // loses its attachment: IC041
const example = readFileSync(join(golden, "../../examples/switch.cfg"), "utf8");
const [from, to] = ["4.1(2)", "5.0(2)"];

// Files as a folder that is chosen.
async function choose(page, files) {
  const folder = mkdtempSync(join(place, "folder-"));
  for (const [path, bytes] of Object.entries(files)) {
    mkdirSync(dirname(join(folder, path)), { recursive: true });
    writeFileSync(join(folder, path), bytes);
  }
  await page.setInputFiles("#folder", folder);
  await page.waitForSelector("#releases:not([hidden])");
  return basename(folder);
}

const dropFiles = (page, files) => page.evaluate(async texts => {
  const transfer = new DataTransfer();
  for (const [name, text] of Object.entries(texts)) transfer.items.add(new File([text], name));
  const before = given;
  document.dispatchEvent(new DragEvent("drop", { dataTransfer: transfer, bubbles: true, cancelable: true }));
  while (given === before || !given.found) await new Promise(done => setTimeout(done, 20));
}, files);

async function ask(page, release = from) {
  await page.fill("[name=from]", release);
  await page.fill("[name=to]", to);
  await page.click("button.main");
  await page.waitForSelector("#results:not([hidden])", patience);
}

async function downloaded(page, button) {
  const [file] = await Promise.all([page.waitForEvent("download"), page.click(`text="${button}"`)]);
  return readFileSync(await file.path());
}

const count = page => page.textContent("#count");

test("a file that is dropped is converted, mended and reported as the command does it", async () => {
  const { page, trouble } = await openPage(browser, url);
  const text = `version ${from}\n` + marking("campus");
  await dropFiles(page, { "switch.cfg": text });
  await page.waitForSelector("#releases:not([hidden])");
  assert.match(await page.textContent("#chosen"), /^1 configuration, written by 4\.1\(2\)$/);
  await page.fill("[name=to]", to);
  await page.keyboard.press("Enter");
  await page.waitForSelector("#results:not([hidden])", patience);
  assert.match(await page.textContent("#rules"), /IC-QOS-04/);
  assert.match(await page.textContent("#causes"), /IC041/);
  const options = ["--from", from, "--to", to, "--accept", "IC041"];
  for (const [button, more] of [["Download the result", []], ["Download the mended result", ["--mend"]]]) {
    const native = runNative(["convert", "--output", "-", ...options, ...more, "switch.cfg"], { "switch.cfg": text });
    assert.equal((await downloaded(page, button)).toString("latin1"), native.output, button);
  }
  const report = (await downloaded(page, "Download the report")).toString();
  writeFileSync(join(place, "report.html"), report);
  const { page: reportPage, trouble: reportTrouble } = await openPage(browser, "file://" + join(place, "report.html"));
  assert.match(await reportPage.textContent("#causes"), /IC041/);
  assert.deepEqual([trouble, reportTrouble], [[], []]);
});

test("a folder: what is no configuration is passed by and told, results come as an archive", async () => {
  const { page, trouble } = await openPage(browser, url);
  const folder = await choose(page, { "a/one.cfg": marking("p"), "b/two.cfg": "npiv enable\n", "b/two.cfg.bak": "npiv enable\n", "notes.txt": "Dear all,\n", "c.cfg": "feature lldp\0\n" });
  assert.match(await page.textContent("#chosen"), /^3 configurations, .*passed by 1 backup .*; 1 file that is no configuration/);
  await ask(page);
  assert.match(await count(page), /^3 of 3 configurations/);
  const archive = await downloaded(page, "Download all results");
  assert.equal(archive.subarray(0, 2).toString(), "PK");
  for (const name of ["a/one.cfg", "b/two.cfg"]) assert.ok(archive.includes(Buffer.from(folder + "/" + name)), name);
  assert.ok(!archive.includes(Buffer.from("c.cfg")), "what cannot be read has no result");
  assert.match(await page.textContent("#downloads"), /2 configurations; without a result: 1/);
  assert.deepEqual(trouble, []);
});

const shownAs = plan => plan.choices.map(({ via, alike, ...figures }) => ({ via, alike: alike.map(String).sort(), ...figures }));

test("the ways of many configurations are those of the command, and one that is taken is asked about", async () => {
  const { page, trouble } = await openPage(browser, url);
  const lossy = release => `version ${release}\n` + marking("p"), files = { "0.cfg": lossy("4.1(3)"), "empty.cfg": "" };
  for (let i = 1; i < 12; i++) files[`${i}.cfg`] = i % 3 ? lossy("4.1(2)") : "version 4.0(1)\nnpiv enable\n";
  const folder = await choose(page, files), text = lossy("4.1(2)");
  await page.fill("[name=from]", "");
  await page.fill("[name=to]", "5.0(3)");
  await page.evaluate(() => { document.querySelector("[name=from]").required = false; });
  await page.click("#compare");
  await page.waitForSelector("#ways:not([hidden])", patience);
  const own = await page.evaluate(() => waysAsked(pathsGiven(), () => {}));
  const native = JSON.parse(runNative(["plan", "--json", "--to", "5.0(3)", folder],
    Object.fromEntries(Object.entries(files).map(([path, bytes]) => [folder + "/" + path, bytes]))).output);
  assert.deepEqual(shownAs(own), shownAs(native));
  assert.deepEqual(own.configurations, native.configurations);
  assert.equal(await page.textContent("#ways tbody b"), native.choices[0].via.length ? "via " + native.choices[0].via.join(", ") : "directly");
  assert.match(await page.textContent("#ways"), /1 configuration could not be tried/);

  await dropFiles(page, { "switch.cfg": text });
  await page.fill("[name=to]", "5.0(3)");
  await page.click("#compare");
  await page.waitForSelector("#ways:not([hidden])", patience);
  await page.click("#ways [aria-label$='via 4.1(4)']");
  await page.waitForSelector("#results:not([hidden])", patience);
  assert.equal(await page.inputValue("[name=via]"), "4.1(4)");
  assert.equal(await page.textContent("#ways [aria-pressed=true]"), "Taken");
  assert.match(await page.textContent("#identity"), /4\.1\(2\) \u2192 4\.1\(4\) \u2192 5\.0\(3\)/);
  const result = runNative(["convert", "--output", "-", "--via", "4.1(4)", "--to", "5.0(3)", "--accept", "IC041,IC043", "switch.cfg"], { "switch.cfg": text });
  assert.equal((await downloaded(page, "Download the result")).toString("latin1"), result.output);
  assert.deepEqual([trouble, await accessibilityProblems(page)], [[], []]);
  for (const width of [320, 768, 1200]) await assertNoOverflow(page, width);
});

test("agreed exceptions come with the configurations, stop nothing, and are told when they are idle", async () => {
  const { page, trouble } = await openPage(browser, url);
  const agreed = "# of the window\nIC041 | a.cfg | interface * | moves | 2099-12-31\nIC041 | gone.cfg\n", name = "<img src=x onerror=alert(1)>, agreed";
  await dropFiles(page, { "a.cfg": unattached("p"), "b.cfg": unattached("p"), [name]: agreed });
  assert.match(await page.textContent("#chosen"), /^2 configurations/);
  assert.ok((await page.textContent("#agreed")).includes("<img src=x onerror=alert(1)>_ agreed"));
  const recognized = await page.evaluate(texts => texts.map(text => isExceptions(new TextEncoder().encode(text))),
    ["\n".repeat(30000) + "hostname a\n", "\r\n# code | configuration | stanza\r\n", "# why\r\n\tic041\r\n", "# IC041 | a\nhostname b\n", ""]);
  assert.deepEqual(recognized, [false, true, true, false, false]);
  await ask(page);
  assert.match(await page.textContent("#exceptions"), /line 3: the exception IC041 for gone\.cfg meets nothing/);
  await page.click(".tile.agreed");
  await waitForCount(page, "1 of 2");
  assert.match(await page.textContent("#list .actions"), /Download the result\s*loses what was agreed on/);
  const report = (await downloaded(page, "Download the report")).toString();
  const native = runNative(["audit", "--report", "report.html", "--from", from, "--to", to, "--accept", "@<img src=x onerror=alert(1)>_ agreed", "a.cfg", "b.cfg"],
    { "a.cfg": unattached("p"), "b.cfg": unattached("p"), "<img src=x onerror=alert(1)>_ agreed": agreed }, "report.html");
  assert.equal(undated(report), undated(native.written));
  await dropFiles(page, { "wrong.txt": "IC041 | b.cfg\nIC777 | a.cfg\n" });
  await page.click("button.main");
  await page.waitForSelector("#trouble:not(:empty)", patience);
  assert.match(await page.textContent("#trouble"), /^wrong\.txt, line 2: unknown finding 'IC777'/);
  await page.click("#agreed button");
  await ask(page);
  assert.equal(await page.$(".tile.agreed"), null);
  assert.deepEqual(trouble, []);
});

test("what a result has lost is said beside its button, and the mended one comes first", async () => {
  const { page, trouble } = await openPage(browser, url);
  const half = example.replaceAll("priority", "fabric"); // the target has no fabric
  const noForm = "class-map x\n  match cos 3\npolicy-map p\n  class x\n    pause no-drop\n" +
    "interface Ethernet1/1\n  service-policy input p\n"; // the target pauses for the whole switch only
  await dropFiles(page, { "whole.cfg": unattached("p"), "half.cfg": half, "fine.cfg": "npiv enable\n", "fails.cfg": noForm });
  await ask(page);
  const said = name => page.evaluate(async wanted => {
    const box = [...document.querySelectorAll("#list > details")].find(each => each.querySelector(".name").textContent.startsWith(wanted));
    box.open = true;
    await new Promise(done => setTimeout(done, 100));
    return [...box.querySelectorAll(".actions .buttons")].map(line => [...line.children].map(part => part.textContent));
  }, name);
  const [mended, result] = ["Download the mended result", "Download the result"];
  assert.deepEqual(await said("whole.cfg"), [[mended, "nothing that was found as an error is lost"], [result, "has 1 error in it: IC041"]]);
  const [first, second] = await said("half.cfg");
  assert.deepEqual([first[0], second[0]], [mended, result]);
  assert.equal(first[1], "still has 1 error in it: IC030");
  assert.deepEqual(await said("fine.cfg"), [[result, "no errors"]]);
  assert.deepEqual(await said("fails.cfg"), []);
  const all = await page.$$eval("#downloads .buttons", list => list.map(line => line.textContent));
  assert.equal(all[0], "Download all, mended" + "1 configuration has errors: IC030");
  assert.equal(all[1], "Download all results" + "2 configurations have errors: IC030, IC041");
  const archive = await downloaded(page, "Download all, mended");
  for (const name of ["whole.cfg", "half.cfg", "fine.cfg"]) assert.ok(archive.includes(Buffer.from(name)), name);
  assert.match(await page.textContent("#downloads"), /3 configurations; without a result: 1/);
  assert.deepEqual(trouble, []);
});

test("a configuration full of markup, control bytes and broken UTF-8 runs nothing, and keeps its bytes", async () => {
  const hostile = Buffer.concat([Buffer.from("npiv enable\n  description </script><script>alert(1)</script><img src=x onerror=alert(2)>"),
    Buffer.from([0x1b, 0x5b, 0x32, 0x4a, 0x07, 0xc3, 0x28, 0xe2, 0x80, 0xae, 0x0d]), Buffer.from(" npiv enable\n" + marking("<b>bold</b>"))]);
  const name = "<img src=x onerror=alert(3)>.cfg", { page, trouble } = await openPage(browser, url);
  const folder = await choose(page, { [name]: hostile });
  await page.fill("[name=to]", to);
  await page.fill("[name=from]", from);
  await page.click("#compare");
  await page.waitForSelector("#ways:not([hidden])", patience);
  await ask(page);
  await page.evaluate(() => document.querySelectorAll("details").forEach(box => { box.open = true; }));
  await page.waitForSelector(".diff");
  assert.ok((await page.textContent("#list .diff")).includes("</script><script>alert(1)</script><img src=x onerror=alert(2)>"));
  assert.ok((await page.textContent("#list .name")).includes(name));
  assert.equal(await page.$("main img, main b:not(.tile b, .ways b), main script"), null);
  const agreed = (await page.$$eval("#causes .code", list => list.map(code => code.textContent))).join(",");
  const native = runNative(["convert", "--output", "-", "--from", from, "--to", to, "--accept", agreed, "in.cfg"], { "in.cfg": hostile });
  assert.equal((await downloaded(page, "Download the result")).toString("latin1"), native.output);
  const report = await downloaded(page, "Download the report");
  writeFileSync(join(place, "hostile.html"), report);
  const other = await openPage(browser, "file://" + join(place, "hostile.html"));
  assert.ok((await other.page.textContent("#list .name")).includes(name), folder);
  assert.deepEqual([trouble, other.trouble], [[], []]);
});

test("the policy of the page refuses every connection, in the page and in a worker", async () => {
  const asked = [], server = createServer((request, response) => { asked.push(request.url); response.end(); });
  await new Promise(done => server.listen(0, "127.0.0.1", done));
  const address = `http://127.0.0.1:${server.address().port}/`;
  const context = await browser.newContext(), page = await context.newPage();
  await page.goto(url);
  assert.match(await page.textContent("header"), /Nothing leaves this\s+machine/);
  const refused = await page.evaluate(async target => {
    const broken = new Set();
    document.addEventListener("securitypolicyviolation", event => broken.add(event.effectiveDirective));
    const none = () => {};
    await fetch(target + "fetch").catch(none);
    navigator.sendBeacon(target + "beacon");
    new WebSocket(target.replace("http", "ws") + "socket").onerror = none;
    for (const [tag, name] of [["img", "src"], ["script", "src"], ["iframe", "src"], ["link", "href"]]) {
      const element = document.createElement(tag);
      if (tag === "link") element.rel = "stylesheet";
      element[name] = target + tag;
      document.body.append(element);
    }
    const form = document.createElement("form");
    form.action = target + "form";
    document.body.append(form);
    form.submit();
    const inWorker = await new Promise(done => {
      const source = `fetch("${target}worker").then(() => postMessage("sent"), () => postMessage("refused"))`;
      new Worker(URL.createObjectURL(new Blob([source]))).onmessage = ({ data }) => done(data);
    });
    await new Promise(done => setTimeout(done, 300));
    return [...broken].map(directive => directive.replace(/-(elem|attr)$/, "")).sort().concat(inWorker);
  }, address);
  server.close();
  assert.deepEqual(asked, []);
  assert.deepEqual(refused, ["connect-src", "form-action", "frame-src", "img-src", "script-src", "style-src", "refused"]);
});

test("the report of many batches is the one that the command writes", async () => {
  const { page, trouble } = await openPage(browser, url);
  const files = Object.fromEntries(Array.from({ length: 50 }, (_, i) => [`sw${i}.cfg`, i % 3 ? marking("p" + i % 5) + `description <${i}\n` : `npiv enable\n hostname ${i}`]));
  files["empty.cfg"] = "";
  const folder = await choose(page, files);
  await ask(page);
  const own = (await downloaded(page, "Download the report")).toString();
  const native = runNative(["audit", "--report", "report.html", "--from", from, "--to", to, folder],
    Object.fromEntries(Object.entries(files).map(([path, text]) => [folder + "/" + path, text])), "report.html");
  assert.equal(undated(own), undated(native.written));
  assert.deepEqual(trouble, []);
});

test("a thousand configurations, and a second question about them", async () => {
  const { page, trouble } = await openPage(browser, url);
  await choose(page, Object.fromEntries(Array.from({ length: 1000 }, (_, i) => [`sw${i}.cfg`, `hostname sw${i}\n` + marking("p" + i % 7)])));
  await ask(page);
  assert.match(await count(page), /^1000 of 1000/);
  assert.equal(await page.$$eval("#list > details", list => list.length), 7);
  await page.fill("#filters [name=text]", "sw77.cfg");
  await waitForCount(page, "1 of 1000");
  await page.fill("[name=to]", "banana");
  await page.evaluate(() => { for (let i = 0; i < 3; i++) document.querySelector("button.main").click(); }); // the last one counts
  await page.waitForSelector("#trouble:not(:empty)", patience);
  await page.fill("[name=to]", "4.1(3)");
  await page.click("button.main");
  await page.waitForSelector("#results:not([hidden])", patience);
  assert.match(await count(page), /^1000 of 1000/);
  assert.deepEqual(trouble, []);
});

test("the keyboard alone, narrow and wide, light and dark, on paper", async () => {
  for (const colorScheme of ["light", "dark"]) {
    const { page, trouble } = await openPage(browser, url, { colorScheme });
    assert.deepEqual(await accessibilityProblems(page), [], colorScheme);
    for (let i = 0; i < 9 && await page.evaluate(() => document.activeElement.id) !== "take-example"; i++) await page.keyboard.press("Tab");
    await page.keyboard.press("Enter");
    await page.waitForSelector("#releases:not([hidden])");
    for (const name of ["from", "to"]) {
      await page.focus(`[name=${name}]`);
      await page.keyboard.type(name === "from" ? "4.1(2)" : "5.0(3)");
    }
    await page.keyboard.press("Enter");
    await page.waitForSelector("#results:not([hidden])", patience);
    assert.match(await page.textContent("#causes"), /IC041/);
    assert.deepEqual(await accessibilityProblems(page), [], colorScheme);
    for (const width of [320, 768, 1200]) await assertNoOverflow(page, width);
    await page.context().grantPermissions([]);
    await page.click(".fix .copy");
    await page.waitForFunction(() => document.querySelector(".fix .copy").textContent === "copied");
    await page.evaluate(() => dispatchEvent(new Event("beforeprint")));
    assert.equal(await page.$$eval("#list details:not([open])", list => list.length), 0);
    assert.ok((await page.pdf()).length > 10000);
    assert.deepEqual(trouble, []);
  }
});

test("each run of the converters starts from a fresh state, and one that breaks takes nothing with it", async () => {
  const { page } = await openPage(browser, url);
  const states = await page.evaluate(async () => {
    const source = document.getElementById("worker-source").textContent + `
      const fresh = () => makeInstance(compiled);
      onmessage = ({ data }) => {
        compiled = new WebAssembly.Module(fflate.inflateSync(data));
        const one = fresh(), before = one.HEAPU8.slice();
        runCommand(compiled, { words: ["audit", "--from", "4.1(2)", "--to", "5.0(3)", "a.cfg"], files: { "a.cfg": textBytes("npiv enable\\n") } });
        one.FS.writeFile("/left-behind", "x");
        one.HEAPU8.fill(255, 1024);
        const two = fresh(), after = two.HEAPU8;
        postMessage({ same: before.every((byte, i) => byte === after[i]), files: two.FS.readdir("/").includes("left-behind") });
      };`;
    const packed = Uint8Array.from(atob(document.getElementById("module").textContent.trim()), c => c.charCodeAt(0));
    return new Promise(done => {
      const worker = new Worker(URL.createObjectURL(new Blob([source])));
      worker.onmessage = ({ data }) => done(data);
      worker.postMessage(packed);
    });
  });
  assert.deepEqual(states, { same: true, files: false });
});
