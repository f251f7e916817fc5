// Instances of the module, each with a memory and files of its own. One that runs the command stands for a
// process; one that runs converters stands for the child that it has do that, so nothing that a converter leaves
// behind reaches the next run.

const decoder = new TextDecoder();

// Where the command runs, among the files of its instance.
const home = "/configurations";

// `module` is the compiled WebAssembly.Module. Returns what the loader makes of a new instance of it.
function makeInstance(module, members = {}) {
  const made = {
    ...members,
    instantiateWasm(imports, done) {
      const instance = new WebAssembly.Instance(module, imports);
      done(instance);
      return instance.exports;
    },
  };
  createInstance(made);
  return made;
}

// Lets `use` have the bytes, with a zero behind them, at an address within the instance.
function withBytes(instance, bytes, use) {
  const address = placed(instance, bytes), result = use(address);
  instance._free(address);
  return result;
}

const textBytes = text => new TextEncoder().encode(text);

// Output goes to files, not through callbacks for each byte.
function openStandardStreams({ FS }, input = new Uint8Array()) {
  FS.writeFile("/input", input);
  ["/input", "/output", "/messages"].forEach((name, number) => {
    FS.close(FS.getStream(number));
    FS.open(name, number ? "w" : "r");
  });
}

// Runs converters in a new instance, in order up to one that fails, and tells `command`, the instance that asks.
function runConverters(module, command, job) {
  let library;
  try {
    library = makeInstance(module);
  } catch (error) {
    withBytes(command, textBytes("no room for another run of the converters: " + error), at => command._take_refusal(at));
    return;
  }
  const { FS } = library;
  FS.mkdirTree("/private/ascii");
  FS.chdir("/private");
  FS.writeFile("ascii/system.cfg", job.text);
  if (job.wantsLogs) ["/mnt/pss", "/bootflash"].forEach(place => FS.mkdirTree(place));
  FS.close(FS.getStream(1));
  FS.open("/dev/null", "w");
  FS.close(FS.getStream(2));
  FS.open("/dev/null", "w");
  try {
    for (const service of job.services) {
      const status = withBytes(library, job.from, from => withBytes(library, job.to,
        to => library._run_service(service, from, to, job.wantsLogs)));
      const after = FS.readFile("ascii/system.cfg");
      withBytes(command, after, at => command._take_step(status, at, after.length));
      if (status !== 0) break;
    }
  } catch (error) {
    withBytes(command, textBytes("ended with " + error), at => command._take_trouble(at));
  }
  if (!job.wantsLogs) return;
  for (const place of ["/mnt/pss", "/bootflash"]) {
    for (const name of FS.readdir(place).filter(name => !name.startsWith("."))) {
      const log = FS.readFile(place + "/" + name);
      withBytes(command, textBytes(name), at => withBytes(command, log, bytes => command._take_log(at, bytes, log.length)));
    }
  }
}

// Runs the command, or another of the module's own calls that takes words. `files` are those that it finds, by
// name; `keep` names those that the caller wants to see afterwards, as far as they are there then.
function runCommand(module, { words, call = "main", files = {}, input, keep = [] }) {
  const command = makeInstance(module, { sha256, runConverters: job => runConverters(module, command, job) });
  const { FS } = command;
  openStandardStreams(command, input);
  FS.mkdirTree(home);
  FS.chdir(home);
  for (const [name, bytes] of Object.entries(files)) {
    const path = `${home}/${name}`;
    FS.mkdirTree(path.slice(0, path.lastIndexOf("/")));
    FS.writeFile(path, bytes);
  }
  const status = callWithWords(command, "_" + call, ["infraconvert", ...words]);
  command._fflush(0);
  const kept = {};
  for (const name of keep) if (FS.analyzePath(name).exists) kept[name] = FS.readFile(name);
  return { status, output: FS.readFile("/output"), messages: decoder.decode(FS.readFile("/messages")), files: kept };
}

// The words stay with the instance, as a process keeps its arguments.
function callWithWords(instance, call, words) {
  const addresses = words.map(word => placed(instance, textBytes(word)));
  const list = instance._malloc(4 * (words.length + 1));
  new Uint32Array(instance.HEAPU8.buffer, list, words.length + 1).set([...addresses, 0]);
  return instance[call](words.length, list);
}

// The address of a copy of the bytes, with a zero behind them.
function placed(instance, bytes) {
  const address = instance._malloc(bytes.length + 1);
  instance.HEAPU8.set(bytes, address);
  instance.HEAPU8[address + bytes.length] = 0;
  return address;
}
