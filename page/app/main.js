// infraconvert.html: files, a question, and the report that answers it.

const workers = makeWorkers(), at = id => document.getElementById(id);
let given = { files: {}, agreed: {}, found: null };

// ---- the files

async function take(found) {
  if (!found.length) return;
  await ready;
  forgetQuestions();
  const files = await readAll(found), agreed = takeExceptions(files);
  const onlyAgreed = !Object.keys(files).length;
  given = onlyAgreed ? { ...given, agreed: { ...given.agreed, ...agreed } } : { files, agreed: { ...given.agreed, ...agreed }, found: null };
  showAgreed();
  if (onlyAgreed) return;
  const tops = [...new Set(Object.keys(files).map(path => path.split("/")[0]))];
  const { output } = await workers.ask("run", { call: "look_around", words: tops, files });
  given.found = JSON.parse(textOf(output));
  showChosen();
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
  prepareQuestion();
}

// ---- the question

function hideAnswer() {
  for (const id of ["results", "rules", "ways"]) at(id).hidden = true;
}

// What was asked is not answered any more.
function forgetQuestions() {
  asked++;
  workers.forget();
  hideAnswer();
  at("work").hidden = true;
}

function showProgress(done, all) {
  at("progress").max = all;
  at("progress").value = done;
  at("progress-text").textContent = done + " of " + all;
}

let asked = 0;

// Does the work of a question, and says so while it lasts. `does` gives what shows the answer; that of a question that
// another one has followed is not shown any more.
async function work(does) {
  const mine = ++asked, isLast = () => mine === asked;
  workers.forget();
  at("trouble").textContent = "";
  at("work").hidden = false;
  at("progress").removeAttribute("value");
  at("progress-text").textContent = "";
  try {
    const show = await does((...progress) => isLast() && showProgress(...progress));
    if (isLast()) show();
  } catch (error) {
    if (isLast()) at("trouble").textContent = error.message;
  }
  if (isLast()) at("work").hidden = true;
}

const pathsGiven = () => given.found.configurations.map(c => c.path);

function answer() {
  for (const id of ["results", "rules"]) at(id).hidden = true;
  return work(async tell => {
    const words = wordsFor("convert"), showTheRules = await rulesAsked();
    showTheRules();
    const whole = await auditAll(wordsFor("audit"), pathsGiven(), tell);
    return () => showAnswer(whole, words);
  });
}

function compareWays() {
  hideAnswer();
  return work(async tell => { const plan = await waysAsked(pathsGiven(), tell); return () => showWays(plan); });
}

function takeWay(stops) {
  question().via.value = stops.join(", ");
  answer();
}

// ---- what starts it all

at("choose-files").addEventListener("click", () => at("files").click());
at("choose-folder").addEventListener("click", () => at("folder").click());
at("take-example").addEventListener("click", takeExample);
for (const name of ["files", "folder"]) at(name).addEventListener("change", event => take(filesOfInput(event.target)));
at("question").addEventListener("submit", event => { event.preventDefault(); answer(); });
at("compare").addEventListener("click", () => { if (at("question").reportValidity()) compareWays(); });
document.addEventListener("dragover", event => { event.preventDefault(); at("drop").classList.add("over"); });
document.addEventListener("dragleave", () => at("drop").classList.remove("over"));
document.addEventListener("drop", async event => {
  event.preventDefault();
  at("drop").classList.remove("over");
  take(await filesOfDrop(event.dataTransfer));
});

const ready = workers.ask("run", { call: "look_around", words: [] }).then(({ output }) => fillQuestion(JSON.parse(textOf(output))));
