// Puts infraconvert.html together, one file that needs nothing else:
//   node build.mjs LOADER.js MODULE.wasm OUTPUT.html SCRIPT ...
// SCRIPT are the components of the report, in their order. Everything that runs is allowed by its digest alone.
import { createHash } from "node:crypto";
import { readFileSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { deflateRawSync } from "node:zlib";

const [loader, wasm, output, ...components] = process.argv.slice(2);
const here = dirname(fileURLToPath(import.meta.url)), mostBytes = 1 << 20;
const read = (...path) => readFileSync(join(here, ...path), "utf8");
const fromNpm = (...path) => read("node_modules", ...path);

// A text that may stand within a script or style element, whatever it holds.
const within = (text, tag) => text.replaceAll("</" + tag, "<\\/" + tag).replaceAll("<!--", "<\\!--");
const digest = text => "'sha256-" + createHash("sha256").update(text).digest("base64") + "'";
const data = (id, text) => `<script type="text/plain" id="${id}">${within(text, "script")}</script>\n`;

const worker = [fromNpm("js-sha256", "build", "sha256.min.js"), fromNpm("fflate", "umd", "index.js"), readFileSync(loader, "utf8"),
  read("module", "instance.js"), read("module", "worker.js")].join("\n");
const app = ["components/ways", ...["workers", "files", "agreed", "records", "plans", "downloads", "question", "answer", "main"].map(name => "app/" + name)];
const script = within([...components.map(name => "components/" + name), ...app].map(name => read(name + ".js")).join("\n"), "script");
const style = read("components", "style.css") + read("app", "app.css");
const report = read("components", "report.html");
const policy = [
  "default-src 'none'", "connect-src 'none'", "form-action 'none'", "base-uri 'none'", "worker-src blob:",
  "script-src 'wasm-unsafe-eval' " + digest(script), "style-src " + digest(style),
].join("; ");

const page = `<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta http-equiv="Content-Security-Policy" content="${policy}">
<title>infraconvert</title>
<style>${style}</style>
${read("infraconvert.html")}
<template id="report-body">${report.match(/<main>(.*)<\/main>/s)[1]}</template>
${report.match(/<footer.*<\/footer>/s)[0]}
${data("example", read("..", "examples", "switch.cfg"))}${data("worker-source", worker)}${
  data("module", deflateRawSync(readFileSync(wasm), { level: 9 }).toString("base64"))}<script>${script}</script>
</html>
`;
if (Buffer.byteLength(page) > mostBytes) throw new Error(`the page has ${Buffer.byteLength(page)} bytes, more than ${mostBytes}`);
writeFileSync(output, page);
