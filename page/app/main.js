// infraconvert.html: files, a question, and the report that answers it.

const workers = makeWorkers(), at = id => document.getElementById(id);
let given = { files: {}, paths: [], found: null };

// ---- the files

async function take(found) {
  if (!found.length) return;
  const files = await readAll(found);
  given = { files, paths: Object.keys(files), found: null };
  const tops = [...new Set(found.map(({ path }) => harmless(path).split("/")[0]))];
  const { output, messages } = await workers.ask("run", { call: "look_around", words: tops, files });
  given.found = JSON.parse(new TextDecoder().decode(output));
  showChosen(messages);
}

const takeExample = () => take([{ path: "switch.cfg", file: new Blob([at("example").textContent]) }]);

function showChosen() {
  const { configurations, passed_by } = given.found;
  const releases = new Map();
  for (const { release } of configurations) releases.set(release, (releases.get(release) || 0) + 1);
  const written = [...releases].map(([release, number]) => (release || "no version line") + (releases.size > 1 ? ": " + number : ""));
  at("chosen").textContent = plural(configurations.length, "configuration") +
    (configurations.length ? ", written by " + written.join(", ") : "") + (passed_by ? "; passed by " + passed_by : "");
  at("releases").hidden = !configurations.length;
  at("results").hidden = at("rules").hidden = true;
  const form = at("question").elements;
  form.from.value = "";
  form.from.required = releases.has(null);
  form.from.placeholder = releases.has(null) ? "for example 4.1(2)" : "as their version lines say";
  if (configurations.length) form[releases.has(null) ? "from" : "to"].focus();
}

// ---- the question

function wordsOfQuestion() {
  const { from, via, to, service, mask } = Object.fromEntries(new FormData(at("question")));
  const words = [];
  if (from) words.push("--from", from.trim());
  for (const release of (via || "").split(",").map(text => text.trim()).filter(Boolean)) words.push("--via", release);
  words.push("--to", to.trim());
  if (service) words.push("--service", service);
  if (mask) words.push("--mask");
  return words;
}

async function answer() {
  const words = wordsOfQuestion(), paths = given.found.configurations.map(c => c.path);
  workers.forget();
  at("trouble").textContent = "";
  at("results").hidden = at("rules").hidden = true;
  try {
    await showRules(words);
    at("work").hidden = false;
    const whole = await auditAll(words, paths);
    at("work").hidden = true;
    showAnswer(whole, words);
  } catch (error) {
    at("work").hidden = true;
    at("trouble").textContent = error.message;
  }
}

// The rules for the releases that most of the configurations go through.
async function showRules(words) {
  const counts = new Map();
  for (const { release } of given.found.configurations) if (release) counts.set(release, (counts.get(release) || 0) + 1);
  const [usual] = [...counts].sort((a, b) => b[1] - a[1])[0] || [];
  const own = words.includes("--from") ? [] : ["--from", usual];
  const asked = words.filter(word => word !== "--mask");
  const { status, output, messages } = await workers.ask("run", { words: ["plan", "--json", ...own, ...asked] });
  if (status !== 0) throw new Error(ownWords(messages));
  at("rules").lastElementChild.replaceChildren(rulesTable(JSON.parse(new TextDecoder().decode(output))));
  at("rules").hidden = false;
}

function rulesTable({ services }) {
  const steps = services.some(s => s.hop) ? ["Step"] : [];
  const rows = services.map(s => [...steps.map(() => (s.hop || []).join(" \u2192 ")), s.title,
    s.rules.map(rule => rule.id).join(", ") || "\u2013", s.rules.map(rule => rule.description).join("; ") || s.no_rule_because]);
  return table("rules", [...steps, "Service", "Rule", "What it does"], rows);
}

// What a message of the command says, without its name in front.
const ownWords = messages => messages.trim().split("\n").map(line => line.replace(/^infraconvert: /, "")).join("\n");

// ---- the configurations

const inBatch = 8; // so that the progress moves, and a new instance for each batch costs little

async function auditAll(words, paths) {
  const batches = [];
  for (let i = 0; i < paths.length; i += inBatch) batches.push(paths.slice(i, i + inBatch));
  let done = 0;
  at("progress").max = paths.length;
  const tell = number => {
    at("progress").value = done += number;
    at("progress-text").textContent = done + " of " + paths.length;
  };
  tell(0);
  const parts = await Promise.all(batches.map(async batch => { const part = await auditBatch(words, batch); tell(batch.length); return part; }));
  return join(parts.flat());
}

// What is said of the files of a batch. Where the command itself comes to no end, each file is tried alone.
async function auditBatch(words, paths) {
  const files = Object.fromEntries(paths.map(path => [path, given.files[path]]));
  try {
    const { status, messages, files: { "/report.html": page } } = await workers.ask("run",
      { words: ["audit", "--report", "/report.html", ...words, "--", ...paths], files, keep: ["/report.html"] });
    if (!page) throw new Error(ownWords(messages) || "infraconvert ended with status " + status);
    return [partOfPage(page)];
  } catch (error) {
    if (paths.length > 1) return (await Promise.all(paths.map(path => auditBatch(words, [path])))).flat();
    return [partOfTrouble(paths[0], error.message)];
  }
}

function showAnswer(whole, words) {
  const report = reportOf(whole.summary, i => whole.details[i] && JSON.parse(whole.details[i]));
  at("report").replaceChildren(at("report-body").content.cloneNode(true));
  report.actions = configuration => actionsFor(report, configuration, words);
  at("results").hidden = false;
  at("downloads").replaceChildren(...downloadsFor(report, words, () => pageOf(whole)));
  location.hash = "";
  showReport(report);
  at("results").scrollIntoView();
}

// ---- what starts it all

at("choose-files").addEventListener("click", () => at("files").click());
at("choose-folder").addEventListener("click", () => at("folder").click());
at("take-example").addEventListener("click", takeExample);
for (const name of ["files", "folder"]) at(name).addEventListener("change", event => take(filesOfInput(event.target)));
at("question").addEventListener("submit", event => { event.preventDefault(); answer(); });
document.addEventListener("dragover", event => { event.preventDefault(); at("drop").classList.add("over"); });
document.addEventListener("dragleave", () => at("drop").classList.remove("over"));
document.addEventListener("drop", async event => {
  event.preventDefault();
  at("drop").classList.remove("over");
  take(await filesOfDrop(event.dataTransfer));
});

// What there is to choose from, before any file is there.
workers.ask("run", { call: "look_around", words: [] }).then(({ output }) => {
  const { border_releases, services } = JSON.parse(new TextDecoder().decode(output));
  at("known-releases").append(...border_releases.map(release => { const option = make("option"); option.value = release; return option; }));
  for (const { name, title } of services) {
    const option = make("option", "", title);
    option.value = name;
    at("question").elements.service.append(option);
  }
});
