// Seeded random trees of flex boxes, laid out by the browser. Prints one line a tree: for every box its depth, its style as
// "property:value;" pairs that differ from the defaults, and its rectangle relative to its parent's border box.
'use strict';

function generator(seed) {
  let state = seed >>> 0;
  return () => {
    state = (state + 0x6D2B79F5) >>> 0;
    let t = state;
    t = Math.imul(t ^ (t >>> 15), t | 1);
    t ^= t + Math.imul(t ^ (t >>> 7), t | 61);
    return ((t ^ (t >>> 14)) >>> 0) / 4294967296;
  };
}

// Pixels in steps of 1/64, the browser's own grid; mostly whole ones.
function pixels(random, low, high) {
  const value = low + random() * (high - low);
  const shape = random();
  return shape < 0.7 ? Math.round(value) : shape < 0.85 ? Math.round(value * 4) / 4 : Math.round(value * 64) / 64;
}
const pick = (random, list) => list[Math.floor(random() * list.length)];
const length = (random, low, high, percents) =>
  random() < percents ? pick(random, [10, 20, 25, 30, 50, 60, 75, 100]) + '%' : pixels(random, low, high) + 'px';

function style(random, depth, isRoot, family) {
  const s = {};
  const chance = (p) => random() < p;
  if (chance(0.55)) s['flex-direction'] = pick(random, ['row', 'row-reverse', 'column', 'column', 'column-reverse']);
  if (chance(family.wrap)) s['flex-wrap'] = pick(random, family.dense ? ['wrap', 'wrap-reverse'] : ['wrap', 'wrap', 'wrap-reverse']);
  if (chance(0.4)) s['justify-content'] = pick(random, ['flex-start', 'flex-end', 'center', 'space-between', 'space-around', 'space-evenly']);
  if (chance(family.dense ? 0.7 : 0.4)) s['align-items'] = pick(random, family.alignments);
  if (chance(0.25)) s['align-content'] = pick(random, ['stretch', 'flex-start', 'flex-end', 'center', 'space-between', 'space-around', 'space-evenly']);
  if (chance(0.3)) s['column-gap'] = length(random, 0, 20, family.percent);
  if (chance(0.3)) s['row-gap'] = length(random, 0, 20, family.percent / 2);
  for (const side of ['left', 'top', 'right', 'bottom']) {
    if (chance(0.2)) s['padding-' + side] = length(random, 0, 20, family.percent);
    if (chance(0.12)) s['border-' + side + '-width'] = Math.round(random() * 6) + 'px';
    if (!isRoot && chance(0.2)) s['margin-' + side] = chance(0.15) ? 'auto' : length(random, -5, 20, family.percent);
  }
  const big = isRoot ? 500 : 160;
  if (isRoot || chance(0.45)) s.width = isRoot && chance(0.2) ? 'auto' : length(random, 5, big, isRoot ? 0 : family.percent);
  if (chance(isRoot ? 0.7 : 0.45)) s.height = length(random, 5, big, isRoot ? 0 : family.percent);
  if (chance(0.12)) s['min-width'] = length(random, 0, 120, family.percent);
  if (chance(0.12)) s['max-width'] = length(random, 20, 200, family.percent);
  if (chance(0.12)) s['min-height'] = length(random, 0, 120, family.percent);
  if (chance(0.12)) s['max-height'] = length(random, 20, 200, family.percent);
  if (isRoot) return s;
  if (chance(0.3)) s['flex-grow'] = pick(random, [0.25, 0.5, 1, 1, 2, 3]);
  if (chance(0.3)) s['flex-shrink'] = pick(random, [0, 0, 0.5, 1, 2, 3]);
  if (chance(0.2)) s['flex-basis'] = length(random, 0, 150, family.percent);
  if (chance(family.dense ? 0.4 : 0.2)) s['align-self'] = pick(random, family.alignments);
  if (chance(family.ratio)) s['aspect-ratio'] = pick(random, [0.5, 1, 1.5, 2]);
  if (chance(0.1)) s.overflow = 'hidden';
  if (chance(family.absolute)) {
    s.position = 'absolute';
    for (const side of ['left', 'top', 'right', 'bottom']) if (chance(0.4)) s[side] = length(random, -10, 60, family.percent);
    // Aligning between two insets is a later addition to CSS, and no part of flexbox.
    if (s.top !== undefined && s.bottom !== undefined) delete s['align-self'];
  }
  return s;
}

function build(random, depth, isRoot, family, budget) {
  const node = {style: style(random, depth, isRoot, family), children: []};
  const wanted = isRoot ? 1 + Math.floor(random() * 5) : random() < 0.45 && depth < 4 ? 1 + Math.floor(random() * 4) : 0;
  for (let i = 0; i < wanted && budget.left > 0; ++i) {
    --budget.left;
    node.children.push(build(random, depth + 1, false, family, budget));
  }
  // Proportions belong to pictures: boxes without children.
  if (node.children.length > 0) delete node.style['aspect-ratio'];
  return node;
}

function make(node) {
  const element = document.createElement('div');
  for (const [property, value] of Object.entries(node.style)) element.style.setProperty(property, String(value));
  for (const child of node.children) element.appendChild(make(child));
  return element;
}

function report(node, element, parent, depth, out) {
  const r = element.getBoundingClientRect();
  const text = Object.entries(node.style).map(([p, v]) => p + ':' + v).join(';');
  out.push(depth + '|' + text + '|' + [r.left - parent.left, r.top - parent.top, r.width, r.height].map((n) => Math.round(n * 4096) / 4096).join(','));
  node.children.forEach((child, i) => report(child, element.children[i], r, depth + 1, out));
}

function runTrees(seed, count) {
  const lines = [];
  for (let i = 0; i < count; ++i) {
    const random = generator(seed * 100003 + i);
    // Half of the trees keep to lengths of the grid, the others have percentages; proportions and absolute boxes come in some.
    const family = {percent: i % 2 === 0 ? 0 : 0.3, ratio: i % 4 < 2 ? 0 : 0.25, absolute: i % 3 === 0 ? 0.12 : 0, wrap: i % 5 === 0 ? 0 : 0.3};
    // Every seventh tree has far more of what interacts: baselines, wrapping in both directions, percentages.
    family.dense = i % 7 === 6;
    family.alignments = ['stretch', 'flex-start', 'flex-end', 'center', 'baseline'];
    if (family.dense) {
      family.alignments.push('baseline', 'baseline', 'baseline');
      family.wrap = 0.6;
      if (family.percent > 0) family.percent = 0.5;
      if (family.absolute > 0) family.absolute = 0.25;
    }
    const tree = build(random, 0, true, family, {left: 14});
    const room = document.getElementById('room');
    room.replaceChildren(make(tree));
    const out = [];
    report(tree, room.firstChild, room.getBoundingClientRect(), 0, out);
    lines.push(out.join(' '));
  }
  return lines.join('\n');
}
