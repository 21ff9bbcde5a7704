// The view of a report: reads the data that the page holds, and makes elements only of what is to be seen. Every text
// of a font goes into the page as text, never as markup. Pictures of glyphs are made in glyphs.js.
'use strict';
(() => {
  const {pictureOf, sampleOf, isDrawn, boxesDiffer} = glyphPictures;
  const SEVERITIES = ['fatal', 'major', 'minor', 'technical', 'information', 'non-font'];
  const LEFT_OUT = {historic: 'older systems', ignored: 'ignored', known: 'known'};
  const STATES = {historic: 'older systems only', advice: 'advice'};
  const CHUNK = {sections: 50, groups: 100, cards: 24, findings: 100};
  const OPEN_FONTS = 3;  // as many fonts are unfolded from the start

  const count = (number) => number.toLocaleString('en');
  const counted = (number, noun) => `${count(number)} ${noun}${number === 1 ? '' : 's'}`;

  /** An element with properties, attributes (names with a dash, role, for) and children, which may be texts. */
  function element(name, properties, ...children) {
    const made = document.createElement(name);
    for (const [key, value] of Object.entries(properties || {})) {
      if (value === undefined || value === false) continue;
      if (key.includes('-') || key === 'role' || key === 'for') made.setAttribute(key, value);
      else made[key] = value;
    }
    made.append(...children.flat(Infinity).filter((child) => child || child === 0));
    return made;
  }

  // ---- the data ---------------------------------------------------------------------------------------------------

  /** Fonts with their groups of findings, in the order of the report. A file without fonts counts as one. */
  function readFonts() {
    const rules = new Map();  // of all files, by name
    const fonts = [];
    for (const script of document.querySelectorAll('script.file')) {
      const file = JSON.parse(script.textContent);
      const drawings = [];
      let next = script.nextElementSibling;
      for (; next && next.matches('script.glyphs'); next = next.nextElementSibling) drawings.push(next);
      for (const [index, font] of file.fonts.entries()) {
        fonts.push({...font, name: font.name || file.path, path: file.path, problem: file.problem, index, drawings});
        for (const group of fonts.at(-1).groups) completeGroup(group, file, rules);
      }
    }
    for (const [id, font] of fonts.entries()) {
      font.id = String(id);
      for (const group of font.groups) group.font = font;
      font.groups.sort((a, b) => SEVERITIES.indexOf(a.severity) - SEVERITIES.indexOf(b.severity));
    }
    return fonts;
  }

  function completeGroup(group, file, rules) {
    const [first] = group.findings;
    const prefix = group.table ? `${group.table}: ` : '';
    const title = group.findings.length !== 1 ? group.title :  // of what the catalogue does not have
        first[0].startsWith(prefix) ? first[0].slice(prefix.length) : first[0];
    const rule = group.rule === undefined ? {name: group.title, title} : file.rules[group.rule];
    if (!rules.has(rule.name)) rules.set(rule.name, rule);
    group.rule = rules.get(rule.name);
    group.count = group.findings.length || 1;
    for (const [index, [text, glyph, glyphName, offset, part]] of group.findings.entries()) {
      group.findings[index] = {text, glyph: glyph ?? -1, glyphName, offset: offset ?? -1, part};
    }
  }

  /** The drawings of a font; parsed when the first is to be seen. */
  function drawingsOf(font) {
    if (!font.parsed) {
      const all = font.drawings.map((script) => JSON.parse(script.textContent));
      font.parsed = all.find((drawings) => drawings.font === font.index) || {glyphs: {}, refusal: ''};
    }
    return font.parsed;
  }

  const fonts = readFonts();
  const groups = fonts.flatMap((font) => font.groups);

  // ---- cards of glyphs and the large view of one ------------------------------------------------------------------

  const glyphLabel = (finding) => finding.glyphName || `glyph ${finding.glyph}`;
  /** The number beside a name, after some words. */
  const glyphNumber = (finding, words) =>
      finding.glyphName ? element('small', {}, `${words}${finding.glyph}`) : '';

  /** A message without what stands beside it already: the table, and the glyph that it begins with. */
  function shortText(finding, group) {
    let text = finding.text;
    if (group.table && text.startsWith(`${group.table}: `)) text = text.slice(group.table.length + 2);
    const opening = `Glyph ${finding.glyph}: `;
    return finding.glyph >= 0 && text.startsWith(opening) ? text.slice(opening.length) : text;
  }

  const legend = (kind, text) => element('li', {}, sampleOf(kind), text);

  function legendOf(drawings) {
    const some = (test) => drawings.some(test);
    return element('ul', {className: 'legend'},
        some((drawing) => drawing.points) && [legend('on', 'point on the curve'), legend('off', 'off the curve'),
            legend('start', 'first of a contour'), legend('found', 'box of the points')],
        some(boxesDiffer) && legend('stored', 'box stored'),
        some((drawing) => drawing.components) && [legend('component', 'box of a component'),
            legend('origin', 'its origin')],
        legend('guide', 'origin, baseline, advance'));
  }

  const columns = (names) => element('thead', {}, element('tr', {}, names.map((name) => cell('th', name))));
  const cell = (name, value, differs) => element(name, {className: differs ? 'differs' : ''}, String(value));

  function boxTable(drawing) {
    const rows = [['stored', drawing.stored], ['of the points', drawing.found]].filter(([, box]) => box);
    const differs = (i) => drawing.stored && drawing.found && drawing.stored[i] !== drawing.found[i];
    return rows.length > 0 && element('table', {},
        columns(['Box', 'xMin', 'yMin', 'xMax', 'yMax']),
        element('tbody', {}, rows.map(([name, box]) =>
            element('tr', {}, cell('th', name), box.map((value, i) => cell('td', value, differs(i)))))));
  }

  function componentTable(drawing) {
    return drawing.components && element('table', {},
        columns(['Component', 'glyph', 'x', 'y']),
        element('tbody', {}, drawing.components.map((part, i) => element('tr', {},
            cell('th', i), cell('td', part.glyph), cell('td', part.x), cell('td', part.y),
            part.byPoints || part.refusal ? cell('td', part.refusal || 'placed by points') : ''))));
  }

  const dialog = element('dialog', {className: 'glyph', 'aria-label': 'Glyph'});

  function showLarge(font, finding, drawing, texts) {
    const sizes = [`advance ${drawing.advance ?? 'unknown'}`, counted((drawing.points || []).length / 3, 'point'),
                   counted((drawing.ends || []).length, 'contour'), `${drawingsOf(font).unitsPerEm} units per em`];
    dialog.replaceChildren(
        element('form', {method: 'dialog'},
            element('h2', {}, element('bdi', {}, glyphLabel(finding)), glyphNumber(finding, ' glyph ')),
            element('button', {'aria-label': 'Close'}, 'Close')),
        pictureOf(drawing, drawingsOf(font).unitsPerEm, `Outline of ${glyphLabel(finding)}`, true),
        element('div', {className: 'facts'}, legendOf([drawing]), element('p', {}, sizes.join(', ')),
            drawing.refusal ? element('p', {className: 'refusal'}, drawing.refusal) : '',
            texts.map((text) => element('p', {}, text)), boxTable(drawing), componentTable(drawing)));
    dialog.showModal();
  }

  function cardOf(font, group, findings) {
    const [finding] = findings;
    const drawing = drawingsOf(font).glyphs[finding.glyph];
    const label = glyphLabel(finding);
    const texts = findings.map((one) => shortText(one, group));
    const hasPicture = isDrawn(drawing) && (drawing.points || drawing.stored);
    const picture = hasPicture && element('button', {className: 'picture', 'aria-label': `${label}, larger`},
        pictureOf(drawing, drawingsOf(font).unitsPerEm, `Outline of ${label}`, false));
    if (picture) picture.addEventListener('click', () => showLarge(font, finding, drawing, texts));
    return element('li', {className: 'card'}, picture || element('div', {className: 'picture empty'},
                isDrawn(drawing) ? 'no outline' : 'not drawn'),
        element('h4', {}, element('bdi', {}, label), glyphNumber(finding, '')),
        drawing.refusal ? element('p', {className: 'refusal'}, drawing.refusal) : '',
        texts.map((text) => element('p', {}, text)));
  }

  // ---- lists ------------------------------------------------------------------------------------------------------

  /** Appends items to a list, so many at a time; a button brings the next. */
  function fillInChunks(list, items, size, make) {
    let shown = 0;
    const more = element('button', {className: 'more', type: 'button'});
    const show = () => {
      const first = shown;
      for (const item of items.slice(shown, shown + size)) list.append(make(item));
      shown = Math.min(shown + size, items.length);
      more.textContent = `Show ${count(Math.min(size, items.length - shown))} of ${count(items.length - shown)} more`;
      more.hidden = shown === items.length;
      return list.children[first];
    };
    show();
    more.addEventListener('click', () => {
      const first = show();
      first.tabIndex = -1;
      first.focus();
    });
    return items.length > size ? [list, more] : [list];
  }

  const fillers = new WeakMap();  // of folded elements that are still empty

  /** A folded element, filled when it is opened first. */
  function folded(className, summary, fill, isOpen) {
    const made = element('details', {className}, element('summary', {}, summary));
    fillers.set(made, () => made.append(...[fill()].flat(Infinity).filter(Boolean)));
    made.addEventListener('toggle', () => made.open && unfold(made));
    if (isOpen) unfold(made);
    return made;
  }

  function unfold(made) {
    const fill = fillers.get(made);
    fillers.delete(made);
    if (fill) fill();
    made.open = true;
  }

  const badge = (severity) => element('span', {className: `severity ${severity}`}, severity);

  function severityCounts(matches) {
    const sums = new Map();
    for (const {group, count: number} of matches) sums.set(group.severity, (sums.get(group.severity) || 0) + number);
    return element('span', {className: 'counts'}, SEVERITIES.filter((severity) => sums.has(severity)).map((severity) =>
        element('span', {className: `count ${severity}`}, count(sums.get(severity)),
                element('span', {}, ` ${severity}`))));
  }

  function findingRow(finding, group) {
    const place = [finding.part, finding.offset < 0 ? '' : `byte ${count(finding.offset)} of '${group.table}'`];
    return element('li', {},
        finding.glyph < 0 ? '' : element('b', {}, element('bdi', {}, glyphLabel(finding)), glyphNumber(finding, ' ')),
        element('span', {className: 'text'}, shortText(finding, group)),
        element('small', {className: 'place'}, place.filter(Boolean).join(', ')));
  }

  /** Cards for the glyphs that are drawn, rows for the other findings. */
  function findingsOf({group, findings}) {
    if (findings.length === 0) return [];
    const {glyphs, refusal} = drawingsOf(group.font);
    const cards = new Map();
    const rows = [];
    for (const finding of findings) {
      const isShown = cards.has(finding.glyph) || cards.size < CHUNK.cards;
      if (finding.glyph < 0 || !glyphs[finding.glyph] || !isShown) rows.push(finding);
      else cards.set(finding.glyph, [...(cards.get(finding.glyph) || []), finding]);
    }
    const undrawn = new Set(rows.map((finding) => finding.glyph).filter((glyph) => glyph >= 0)).size;
    const result = [];
    if (cards.size > 0) {
      const drawn = [...cards.keys()].map((glyph) => glyphs[glyph]).filter(isDrawn);
      result.push(drawn.length > 0 ? legendOf(drawn) : '',
          element('ul', {className: 'cards'}, [...cards.values()].map((each) => cardOf(group.font, group, each))));
    }
    if (undrawn > 0) {
      result.push(refusal ? element('p', {className: 'refusal'}, `No glyph can be drawn. ${refusal}`) :
                  element('p', {className: 'note'}, `${counted(undrawn, 'further glyph')} not drawn`));
    }
    if (rows.length > 0) {
      const list = element('ol', {className: 'findings'});
      result.push(...fillInChunks(list, rows, CHUNK.findings, (finding) => findingRow(finding, group)));
    }
    return result;
  }

  const testLabel = ({test, testName}) => testName && testName !== test ? `${testName} (${test})` : test;

  function explanationOf(matches) {
    const [{group: {rule}}] = matches;
    const tests = [...new Set(matches.map(({group}) => testLabel(group)))].filter(Boolean);
    const entry = (name, value) => value ? [element('dt', {}, name), element('dd', {}, value)] : [];
    return element('div', {className: 'explanation'}, rule.means ? element('p', {}, rule.means) : '',
        element('dl', {}, entry('Why', rule.why), entry('Fix', rule.fix), entry('Document', rule.document),
            entry('Test', tests.join(', '))));
  }

  function groupSummary(group, matches) {
    const number = matches.reduce((sum, match) => sum + match.count, 0);
    const findings = matches.flatMap((match) => match.findings);
    const named = matches.length === 1 && findings.length > 0 && findings.every((finding) => finding.glyph >= 0);
    const glyphs = named ? new Set(findings.map((finding) => finding.glyph)).size : 0;
    const standing = group.standing === 'historic' ? '' : LEFT_OUT[group.standing];
    const tags = [STATES[group.rule.state], standing].filter(Boolean);
    const preview = group.rule.means && matches.length === 1 && findings.length > 0 ? findings[0] : null;
    return [badge(group.severity),
            element('span', {className: 'title'}, group.rule.title,
                tags.map((tag) => [' ', element('span', {className: 'tag'}, tag)])),
            element('code', {}, group.rule.means ? group.rule.name : group.table),
            element('span', {className: 'number'}, counted(number, glyphs === number ? 'glyph' : 'finding')),
            preview && element('small', {className: 'preview'},
                preview.glyph < 0 ? '' : [element('bdi', {}, glyphLabel(preview)), ' \u2013 '],
                shortText(preview, group))];
  }

  const groupDetails = (match) => folded('rule', groupSummary(match.group, [match]),
      () => [element('div', {className: 'body'}, explanationOf([match]), findingsOf(match))]);

  function fontHeading(font) {
    return [element('bdi', {className: 'name'}, font.name || font.path),
            element('small', {}, [font.type, font.postScriptName].filter((text) => text && text !== font.name)
                .join(', ')),
            font.name === font.path ? '' : element('bdi', {className: 'path'}, font.path)];
  }

  function fontSection(font, matches, isOpen) {
    const clean = font.problem ? `not tested: ${font.problem}` : 'nothing found';
    const summary = [element('span', {className: 'font-heading'}, fontHeading(font)),
                     matches.length > 0 ? severityCounts(matches) : element('span', {className: 'clean'}, clean)];
    if (matches.length === 0) return element('div', {className: font.problem ? 'font' : 'font clean'}, summary);
    const fill = () => fillInChunks(element('div', {}), matches, CHUNK.groups, groupDetails);
    return folded('font', summary, fill, isOpen);
  }

  function ruleSection(matches) {
    const [{group}] = matches;
    const fontPart = (match) =>
        element('section', {}, element('h3', {}, fontHeading(match.group.font)), findingsOf(match));
    return folded('rule', groupSummary(group, matches),
        () => [element('div', {className: 'body'}, explanationOf(matches),
                       fillInChunks(element('div', {}), matches, CHUNK.sections, fontPart))]);
  }

  // ---- filters ----------------------------------------------------------------------------------------------------

  const unfiltered = () => ({hidden: new Set(), font: '', test: '', rule: '', text: '', view: 'font', leftOut: false});
  let filter = unfiltered();

  /** The findings of a group that the filters let through; null for none. */
  function matchOf(group, text) {
    if (filter.hidden.has(group.severity) || (group.standing && !filter.leftOut)) return null;
    if (filter.font && filter.font !== group.font.id || filter.test && filter.test !== group.test) return null;
    if (filter.rule && filter.rule !== group.rule.name) return null;
    if (!text) return {group, findings: group.findings, count: group.count};
    const holds = (value) => value && value.toLowerCase().includes(text);
    if ([group.rule.name, group.rule.title, group.font.name, group.font.path].some(holds)) {
      return {group, findings: group.findings, count: group.count};
    }
    const findings = group.findings.filter((finding) => holds(finding.text) || holds(finding.glyphName));
    return findings.length > 0 ? {group, findings, count: findings.length} : null;
  }

  function gather(matches, key) {
    const gathered = new Map();
    for (const match of matches) {
      if (!gathered.has(key(match.group))) gathered.set(key(match.group), []);
      gathered.get(key(match.group)).push(match);
    }
    return gathered;
  }

  const isNarrowed = () => filter.hidden.size > 0 || filter.font || filter.test || filter.rule || filter.text;

  function sectionsByFont(matches) {
    const ofFonts = gather(matches, (group) => group.font);
    const shown = isNarrowed() ? fonts.filter((font) => ofFonts.has(font)) : fonts;
    const open = shown.length <= OPEN_FONTS;
    return [shown, (font) => fontSection(font, ofFonts.get(font) || [], open)];
  }

  function sectionsByRule(matches) {
    const ofRules = gather(matches, ({severity, standing, rule}) => [severity, standing || '', rule.name].join(' '));
    const total = (list) => list.reduce((sum, match) => sum + match.count, 0);
    const grave = (list) => SEVERITIES.indexOf(list[0].group.severity);
    const shown = [...ofRules.values()].sort((a, b) => grave(a) - grave(b) || total(b) - total(a));
    return [shown, ruleSection];
  }

  const results = document.getElementById('results');
  const status = element('p', {role: 'status', className: 'status'});
  const list = element('div', {className: 'list'});

  function render() {
    const text = filter.text.trim().toLowerCase();
    const matches = groups.map((group) => matchOf(group, text)).filter(Boolean);
    const number = matches.reduce((sum, match) => sum + match.count, 0);
    const all = groups.reduce((sum, group) => sum + (group.standing && !filter.leftOut ? 0 : group.count), 0);
    const rules = new Set(matches.map((match) => match.group.rule)).size;
    status.textContent = number === 0 && all > 0 ? 'No finding matches the filters' :
        `${isNarrowed() ? `${count(number)} of ` : ''}${counted(all, 'finding')} in ${counted(rules, 'rule')}`;
    const [sections, make] = filter.view === 'rule' ? sectionsByRule(matches) : sectionsByFont(matches);
    list.replaceChildren();
    list.replaceChildren(...fillInChunks(element('div', {}), sections, CHUNK.sections, make));
    showControls();
  }

  const uniqueBy = (items, key) => [...new Map(items.map((item) => [key(item), item])).values()];
  const byText = (a, b) => a.text.localeCompare(b.text);

  function select(name, key, options) {
    const id = `filter-${key}`;
    const control = element('select', {id}, element('option', {value: ''}, 'All'),
        options.map(({value, text}) => element('option', {value}, text)));
    control.addEventListener('change', () => change({[key]: control.value}));
    return element('p', {}, element('label', {for: id}, name), control);
  }

  function change(values) {
    filter = {...filter, ...values};
    writeAddress();
    render();
  }

  function severityButtons() {
    const known = new Set(groups.map((group) => group.severity));
    const buttons = SEVERITIES.filter((severity) => severity !== 'non-font' || known.has(severity)).map((severity) => {
      const button = element('button', {type: 'button', className: severity, 'data-severity': severity},
          element('b', {}), ` ${severity}`);
      button.addEventListener('click', () => {
        const hidden = new Set(filter.hidden);
        if (!hidden.delete(severity)) hidden.add(severity);
        change({hidden});
      });
      return element('li', {}, button);
    });
    document.getElementById('severities').replaceChildren(...buttons);
    document.getElementById('severities').setAttribute('aria-label', 'Severities to show');
  }

  const search = element('input', {type: 'search', id: 'filter-text', autocomplete: 'off', spellcheck: false});
  search.addEventListener('input', () => change({text: search.value}));
  const reset = element('button', {type: 'button', className: 'reset'}, 'Reset filters');
  reset.addEventListener('click', () => {
    change({...unfiltered(), view: filter.view});
    search.focus();
  });
  const leftOutCount = groups.reduce((sum, group) => sum + (group.standing ? group.count : 0), 0);
  const leftOut = element('input', {type: 'checkbox', id: 'filter-left-out'});
  leftOut.addEventListener('change', () => change({leftOut: leftOut.checked}));

  function viewButtons() {
    return element('p', {className: 'views', role: 'group', 'aria-label': 'Fold by'}, ['font', 'rule'].map((view) => {
      const button = element('button', {type: 'button', 'data-view': view}, `By ${view}`);
      button.addEventListener('click', () => change({view}));
      return button;
    }));
  }

  function filterPanel() {
    const fontLabel = ({name, path}) => name === path ? path : `${name} (${path.split('/').at(-1)})`;
    const fontOptions = fonts.map((font) => ({value: font.id, text: fontLabel(font)}));
    const testOptions = uniqueBy(groups, (group) => group.test).filter((group) => group.test)
        .map((group) => ({value: group.test, text: testLabel(group)}));
    const ruleOptions = uniqueBy(groups, (group) => group.rule.name)
        .map(({rule}) => ({value: rule.name, text: rule.name}));
    const leftOutLabel = `Show ${counted(leftOutCount, 'finding')} left out: older systems, ignored or known`;
    const wide = window.matchMedia('(min-width: 60rem)');
    const panel = element('details', {className: 'filters', open: wide.matches}, element('summary', {}, 'Filters'),
        element('search', {},
            element('p', {}, element('label', {for: search.id}, 'Search'), search), select('Font', 'font', fontOptions),
            select('Test', 'test', testOptions.sort(byText)), select('Rule', 'rule', ruleOptions.sort(byText)),
            leftOutCount > 0 ? element('p', {className: 'check'}, leftOut,
                element('label', {for: leftOut.id}, leftOutLabel)) : '',
            reset));
    wide.addEventListener('change', () => { panel.open = wide.matches; });
    return panel;
  }

  /** Lets the controls show what the filter is. */
  function showControls() {
    const sums = new Map();
    for (const {severity, standing, count: number} of groups) {
      if (!standing || filter.leftOut) sums.set(severity, (sums.get(severity) || 0) + number);
    }
    for (const button of document.querySelectorAll('[data-severity]')) {
      button.firstChild.textContent = count(sums.get(button.dataset.severity) || 0);
      button.setAttribute('aria-pressed', String(!filter.hidden.has(button.dataset.severity)));
    }
    for (const button of document.querySelectorAll('[data-view]')) {
      button.setAttribute('aria-pressed', String(filter.view === button.dataset.view));
    }
    for (const key of ['font', 'test', 'rule']) document.getElementById(`filter-${key}`).value = filter[key];
    if (search.value !== filter.text) search.value = filter.text;
    leftOut.checked = filter.leftOut;
    reset.hidden = !isNarrowed();
  }

  // ---- the address, which keeps the filters -----------------------------------------------------------------------

  function writeAddress() {
    const words = new URLSearchParams();
    for (const key of ['font', 'test', 'rule', 'text']) if (filter[key]) words.set(key, filter[key]);
    if (filter.hidden.size > 0) words.set('hide', [...filter.hidden].join(' '));
    if (filter.view !== 'font') words.set('view', filter.view);
    if (filter.leftOut) words.set('all', '1');
    try {
      history.replaceState(null, '', words.size > 0 || location.hash ? `#${words}` : location.href);
    } catch { /* where the address may not be changed, the filters work all the same */ }
  }

  function readAddress() {
    const words = new URLSearchParams(location.hash.slice(1));
    filter = unfiltered();
    for (const key of ['test', 'rule', 'text']) filter[key] = words.get(key) || '';
    if (fonts[words.get('font')]) filter.font = words.get('font');
    filter.hidden = new Set((words.get('hide') || '').split(' ').filter((word) => SEVERITIES.includes(word)));
    filter.view = words.get('view') === 'rule' ? 'rule' : 'font';
    filter.leftOut = words.get('all') === '1';
  }

  // ---- start ------------------------------------------------------------------------------------------------------

  function unfoldAll(isOpen) {
    for (const details of list.querySelectorAll('details')) isOpen ? unfold(details) : details.open = false;
    if (isOpen) for (const details of list.querySelectorAll('details')) unfold(details);
  }

  function start() {
    const unfoldButton = element('button', {type: 'button'}, 'Unfold all');
    const foldButton = element('button', {type: 'button'}, 'Fold all');
    unfoldButton.addEventListener('click', () => unfoldAll(true));
    foldButton.addEventListener('click', () => unfoldAll(false));
    severityButtons();
    results.before(filterPanel());
    results.append(element('div', {className: 'toolbar'}, status, viewButtons(),
        element('p', {className: 'folds'}, unfoldButton, foldButton)), list, dialog);
    readAddress();
    render();

    window.addEventListener('hashchange', () => {
      if (location.hash === '#results') return;
      readAddress();
      render();
    });
    document.addEventListener('keydown', (event) => {
      const isTyping = event.target.matches('input, select') || event.ctrlKey || event.metaKey || event.altKey;
      if (event.key !== '/' || isTyping || dialog.open) return;
      event.preventDefault();
      search.closest('details').open = true;
      search.focus();
    });
    let open = new Set();  // what is unfolded when printing begins
    window.addEventListener('beforeprint', () => {
      open = new Set(list.querySelectorAll('details[open]'));
      unfoldAll(true);
    });
    window.addEventListener('afterprint', () => {
      for (const details of list.querySelectorAll('details')) details.open = open.has(details);
    });
  }

  start();
})();
