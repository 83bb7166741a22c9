// SPDX-License-Identifier: GPL-3.0-or-later
// What scripts of the language expect beside its core, and what a host must not leave to them: calls that
// take gigabytes before anything can interrupt them. The language never had those.

import {bridge, fail, get, global, hidden, raise} from "./host.js";

const DEEPEST_GROUP = 1000;

function listOf(collection) {
  if (collection === null || collection === undefined) return [];
  if (collection.$member >= 0) collection = get(collection.$id, collection.$member);
  if (Array.isArray(collection)) return collection;
  if (collection.$id === undefined) raise(451);
  return bridge.Items(collection.$id);
}
function Enumerator(collection) {
  var items = listOf(collection), at = 0;
  this.atEnd = function () { return at >= items.length; };
  this.item = function () { return items[at]; };
  this.moveNext = function () { ++at; };
  this.moveFirst = function () { at = 0; };
}
function VBArray(array) {
  if (!Array.isArray(array)) fail(5013, "VBArray expected");
  var bounds = array.$bounds || [array.length - 1];
  function bound(dimension) {
    var index = dimension === undefined ? 0 : dimension - 1;
    if (!(index in bounds)) raise(9);
    return bounds[index];
  }
  this.dimensions = function () { return bounds.length; };
  this.lbound = function (dimension) { bound(dimension); return 0; };
  this.ubound = bound;
  this.toArray = function () { return array.slice(); };
  this.getItem = function (...indices) {
    if (indices.length !== bounds.length) raise(9);
    var place = 0, step = 1;
    for (var i = 0; i < bounds.length; ++i) {
      if (!(indices[i] >= 0 && indices[i] <= bounds[i])) raise(9);
      place += Math.floor(indices[i]) * step;
      step *= bounds[i] + 1;
    }
    return array[place];
  };
}

var NativeError = Error;
function ScriptError(number, description) {
  var numbered = arguments.length > 1 || typeof number === "number";
  var error = new NativeError(numbered ? (description === undefined ? "" : description) : number);
  if (numbered) error.number = number;
  return error;
}
hidden(ScriptError, "name", "Error");
ScriptError.prototype = NativeError.prototype;
hidden(NativeError.prototype, "constructor", ScriptError);
Object.defineProperty(NativeError.prototype, "number", {
  get: function () { return bridge.NumberOf(String(this.name), String(this.message)); },
  set: function (value) { hidden(this, "number", value); },
  configurable: true
});
Object.defineProperty(NativeError.prototype, "description", {
  get: function () { return this.message; },
  set: function (value) { hidden(this, "description", value); },
  configurable: true
});

var additions = {
  ActiveXObject: function ActiveXObject(programId) { return bridge.Create(String(programId)); },
  Enumerator: Enumerator,
  VBArray: VBArray,
  Error: ScriptError,
  ScriptEngine: function () { return "JScript"; },
  ScriptEngineMajorVersion: function () { return 5; },
  ScriptEngineMinorVersion: function () { return 8; },
  ScriptEngineBuildVersion: function () { return 0; },
  CollectGarbage: function () { bridge.CollectGarbage(); }
};
for (var addition in additions) hidden(global, addition, additions[addition]);
hidden(Date.prototype, "getVarDate", function () { return this; });

["ArrayBuffer", "SharedArrayBuffer", "DataView", "Atomics", "Int8Array", "Uint8Array", "Int16Array",
 "Uint16Array", "Int32Array", "Uint32Array", "Uint8ClampedArray", "Float32Array", "Float64Array"
].forEach(function (name) { delete global[name]; });
["repeat", "padStart", "padEnd"].forEach(function (name) { delete String.prototype[name]; });
["fill", "copyWithin"].forEach(function (name) { delete Array.prototype[name]; });

// A pattern is taken apart by calls within each other, so one that nests too deeply would exhaust the stack
// of the program.
function shallow(pattern) {
  if (typeof pattern !== "string") return pattern;
  for (var at = 0, depth = 0; at < pattern.length; ++at) {
    if (pattern[at] === "(" && ++depth > DEEPEST_GROUP) raise(28);
    if (pattern[at] === ")") --depth;
  }
  return pattern;
}
export const NativeRegExp = RegExp;
function GuardedRegExp(pattern, flags) { return new NativeRegExp(shallow(pattern), flags); }
Object.setPrototypeOf(GuardedRegExp, NativeRegExp);
hidden(GuardedRegExp, "name", "RegExp");
GuardedRegExp.prototype = NativeRegExp.prototype;
hidden(NativeRegExp.prototype, "constructor", GuardedRegExp);
hidden(global, "RegExp", GuardedRegExp);
[[String.prototype, "match"], [String.prototype, "search"], [NativeRegExp.prototype, "compile"]
].forEach(function (place) {
  var native = place[0][place[1]];
  if (native) hidden(place[0], place[1], function (pattern, flags) {
    return native.call(this, shallow(pattern), flags);
  });
});
