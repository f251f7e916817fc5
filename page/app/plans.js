// The ways that the command tells of batches of configurations, as those of them all.

// The stops that any of them tried, the shortest first.
function allStops(configurations) {
  const known = new Map();
  for (const { ways } of configurations)
    for (const { routes } of ways) for (const route of routes) known.set(String(stopsOf(route)), stopsOf(route));
  return [...known.values()].sort((a, b) => a.length - b.length);
}

// What a batch says of these stops. Its configurations come from one release: stops that lie behind it are not on
// their way.
function choiceThrough({ choices }, stops) {
  const names = list => choices.find(choice => choice.alike.some(own => String(own) === String(list)));
  return names(stops) || (stops.length ? choiceThrough({ choices }, stops.slice(1)) : undefined);
}

const figures = ["failing", "losing", "best", "lost", "warnings"];

// `parts` are plans of configurations that come from one release each. What is alike in every part is one choice.
function joinPlans(parts, paths) {
  const places = new Map(paths.map((path, i) => [path, i]));
  const configurations = parts.flatMap(part => part.configurations).sort((a, b) => places.get(a.path) - places.get(b.path));
  const tried = parts.filter(part => part.choices.length), choices = new Map();
  for (const stops of allStops(configurations)) {
    const own = tried.map(part => choiceThrough(part, stops));
    const key = own.map((choice, i) => tried[i].choices.indexOf(choice)).join();
    if (!choices.has(key)) choices.set(key, { via: stops, alike: [],
      ...Object.fromEntries(figures.map(name => [name, own.reduce((sum, choice) => sum + choice[name], 0)])) });
    choices.get(key).alike.push(stops);
  }
  const rank = ({ failing, lost, via, warnings }) => [failing, lost, via.length, warnings];
  return { configurations, choices: [...choices.values()].sort((a, b) => firstDifference(rank(a), rank(b))) };
}

function firstDifference(a, b) {
  const i = a.findIndex((value, at) => value !== b[at]);
  return i < 0 ? 0 : a[i] - b[i];
}
