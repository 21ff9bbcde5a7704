// Pictures of glyphs as SVG. A drawing holds, in font units with y upwards: points (x and y from the point before, and
// the kind), ends (of contours, one past the last point), advance, stored and found (boxes), components.
'use strict';
const glyphPictures = (() => {
  const QUADRATIC = 0, ON = 1, CUBIC = 2;
  const NUMBERED_POINTS = 150;

  /** Whether there is something to see: the outline, or that there is none. */
  const isDrawn = (drawing) => Boolean(drawing.points || !drawing.refusal);

  /** The contours of a drawing, each a list of points with x, y, kind and number. */
  function contoursOf(drawing) {
    const points = [];
    for (let i = 0, x = 0, y = 0; i + 2 < (drawing.points || []).length; i += 3) {
      x += drawing.points[i];
      y += drawing.points[i + 1];
      points.push({x, y, kind: drawing.points[i + 2], number: i / 3});
    }
    let begin = 0;
    return (drawing.ends || []).map((end) => points.slice(begin, begin = Math.max(begin, end)));
  }

  const middle = (a, b) => ({x: (a.x + b.x) / 2, y: (a.y + b.y) / 2, kind: ON});
  const at = (point) => `${point.x} ${point.y}`;

  /** The curve of a contour, with the points that lie implied between two quadratic ones. */
  function curveOf(contour) {
    if (contour.length === 0) return '';
    const first = contour.findIndex((point) => point.kind === ON);
    const start = first >= 0 ? contour[first] : middle(contour.at(-1), contour[0]);
    const rest = first >= 0 ? [...contour.slice(first + 1), ...contour.slice(0, first), start] : [...contour, start];
    let path = `M${at(start)}`;
    let off = [];
    for (const point of rest) {
      if (point.kind === ON) {
        path += (off.length === 0 ? 'L' : off.length === 1 ? 'Q' : 'C') + [...off.slice(-2), point].map(at).join(' ');
        off = [];
      } else if (off.length === 1 && off[0].kind === QUADRATIC) {
        path += `Q${at(off[0])} ${at(middle(off[0], point))}`;
        off = [point];
      } else {
        off.push(point);
      }
    }
    return path + 'Z';
  }

  /** Lines from points beside the curve to their neighbours. */
  function handlesOf(contour) {
    return contour.map((point, i) => {
      const next = contour[(i + 1) % contour.length];
      const isHandle = (point.kind !== ON || next.kind !== ON) && (point.kind !== CUBIC || next.kind !== CUBIC);
      return isHandle ? `M${at(point)}L${at(next)}` : '';
    }).join('');
  }

  const dots = (points) => points.map((point) => `M${at(point)}h0`).join('');
  const rectangle = ([xMin, yMin, xMax, yMax]) => `M${xMin} ${yMin}H${xMax}V${yMax}H${xMin}Z`;

  /** Whether a stored box is another than that of the points. */
  const boxesDiffer = ({stored, found}) =>
      Boolean(stored) && !(found && stored.every((value, i) => value === found[i]));

  /** What is to be seen: the points and the advance, and of a stored box as much as does not make them tiny. */
  function frameOf(drawing, unitsPerEm) {
    const found = drawing.found || [0, 0, drawing.advance || unitsPerEm, unitsPerEm];
    const [xMin, yMin, xMax, yMax] = found;
    const reach = Math.max(xMax - xMin, yMax - yMin, unitsPerEm / 10);
    const stored = drawing.stored || found;
    const advance = Math.min(Math.max(drawing.advance || 0, 0), xMax + reach);
    const left = Math.min(xMin, 0 < xMin - reach ? xMin : 0, Math.max(stored[0], xMin - reach));
    const right = Math.max(xMax, advance, Math.min(stored[2], xMax + reach));
    const bottom = Math.min(yMin, 0 < yMin - reach ? yMin : 0, Math.max(stored[1], yMin - reach));
    const top = Math.max(yMax, Math.min(stored[3], yMax + reach));
    const margin = Math.max(right - left, top - bottom) * 0.07;
    return {x: left - margin, y: -top - margin, width: right - left + 2 * margin, height: top - bottom + 2 * margin};
  }

  function vector(name, attributes, ...children) {
    const made = document.createElementNS('http://www.w3.org/2000/svg', name);
    for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, value);
    made.append(...children);
    return made;
  }

  /** A picture of a glyph: one path for all that looks alike, so that it stays small. */
  function pictureOf(drawing, unitsPerEm, label, isLarge) {
    const contours = contoursOf(drawing);
    const points = contours.flat();
    const frame = frameOf(drawing, unitsPerEm);
    const far = 4 * (frame.width + frame.height);
    const shapes = vector('g', {transform: 'scale(1 -1)'});
    const add = (kind, path) => path && shapes.append(vector('path', {class: kind, d: path}));
    add('guide', `M${-far} 0H${far}M0 ${-far}V${far}` + (drawing.advance ? `M${drawing.advance} ${-far}V${far}` : ''));
    for (const part of drawing.components || []) add('component', part.box ? rectangle(part.box) : '');
    const curve = contours.map(curveOf).join('');
    add('shape', curve);
    if (drawing.found) add('found', rectangle(drawing.found));
    if (boxesDiffer(drawing)) add('stored', rectangle(drawing.stored));
    add('handle', contours.map(handlesOf).join(''));
    add('curve', curve);
    add('off', dots(points.filter((point) => point.kind !== ON)));
    add('on', dots(points.filter((point) => point.kind === ON)));
    add('start', dots(contours.filter((contour) => contour.length > 0).map((contour) => contour[0])));
    add('origin', dots((drawing.components || []).filter((part) => !part.byPoints)));
    const picture = vector('svg', {viewBox: `${frame.x} ${frame.y} ${frame.width} ${frame.height}`, role: 'img',
                                   'aria-label': label}, shapes);
    if (isLarge && points.length <= NUMBERED_POINTS) {
      const size = Math.max(frame.width, frame.height) / 55;
      for (const point of points) {
        const number = vector('text', {x: point.x + size / 2, y: -point.y - size / 2, 'font-size': size});
        number.append(String(point.number));
        picture.append(number);
      }
    }
    return picture;
  }

  /** A sample of how something is drawn, for a legend. */
  function sampleOf(kind) {
    const isDot = ['on', 'off', 'start', 'origin'].includes(kind);
    return vector('svg', {viewBox: '0 0 24 12', class: 'sample', 'aria-hidden': 'true'},
                  vector('path', {class: kind, d: isDot ? 'M12 6h0' : 'M2 6H22'}));
  }

  return {pictureOf, sampleOf, isDrawn, boxesDiffer};
})();
