// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/jscript/prelude.h"

#include <string_view>

#include "script/jscript/prelude_json.h"
#include "script/jscript/prelude_long_lists.h"

namespace quarlin::jscript {
namespace {

// A facade inherits from its shape, an object with an accessor for each spelling of a member that was ever
// used; the shape inherits from `unknown`, which finds a new spelling and adds the accessor. So every use
// but the first is a plain look-up:
//
//   facade {$id, $handle}  ->  shape {Text, text, TextIO}  ->  unknown (find, then define)  ->  common
//
// What every facade has stands in the shape as well, in front of `unknown`: that is a proxy, so looking there
// runs code.
//
// Handle and facade refer to each other, so neither is collected without the other.
constexpr std::u16string_view facades =
    uR"js(
(function (bridge, global) {
  "use strict";
  var find = bridge.Find, peek = bridge.Peek, call1 = bridge.Call1, call2 = bridge.Call2,
      callMany = bridge.CallMany, plain = bridge.Plain;
  var INDEXED = 1, METHOD = 2, DEEPEST_GROUP = 1000, MEMBERS = 65536;
  var facadeKey = Symbol("facade");
  var shapes = [];

  function raise(number, culprit) { bridge.Raise(number, culprit || ""); }
  // For numbers that this language alone has.
  function fail(number, text) {
    var error = new Error(text);
    error.number = number | 0x800A0000;
    throw error;
  }
  function hidden(target, name, value) {
    Object.defineProperty(target, name, {value: value, configurable: true, writable: true});
  }
  function get(id, member) {
    bridge.place = id * MEMBERS + member;
    return bridge.value;
  }
  function put(id, member, value) {
    bridge.place = id * MEMBERS + member;
    bridge.value = value;
  }
  function invoke(id, member, given) {
    switch (given.length) {
      case 0: return get(id, member);
      case 1: return call1(id, member, given[0]);
      case 2: return call2(id, member, given[0], given[1]);
      default: return callMany(id, member, given);
    }
  }

  var common = Object.create(Object.prototype);
  function valueOfFacade() { return plain(this.$id); }
  function textOfFacade() { return String(plain(this.$id)); }
  function entryOfFacade(...given) { return new Entry(this.$id, 0, given); }
  function addCommons(target) {
    hidden(target, Symbol.toPrimitive, valueOfFacade);
    hidden(target, "valueOf", valueOfFacade);
    hidden(target, "toString", textOfFacade);
    hidden(target, "$member", -1);
    hidden(target, "$entry", entryOfFacade);
  }
  addCommons(common);

  // What `d.Item("k") = 1` is turned into: `d.Item.$entry("k").$value = 1`.
  function Entry(id, member, given) {
    this.id = id;
    this.member = member;
    this.given = given;
  }
  Object.defineProperty(Entry.prototype, "$value", {
    get: function () { return invoke(this.id, this.member, this.given); },
    set: function (value) { bridge.PutMany(this.id, this.member, this.given, value); }
  });
  hidden(Object.prototype, "$entry", function () { fail(5008, "Illegal assignment"); });

  function bare(callable) {
    delete callable.name;
    delete callable.length;
    return callable;
  }

  // `form.TextIO` waiting for its index; used without one it is what the member gives without arguments.
  var awaiting = new Proxy({}, {
    get: function (target, name, self) {
      if (name === "$entry") return (...given) => new Entry(self.$id, self.$member, given);
      var value = peek(self.$id, self.$member);
      if (name === Symbol.toPrimitive) return function () { return value === null ? value : value.valueOf(); };
      var found = value[name];
      return typeof found === "function" && found.$id === undefined ? found.bind(value) : found;
    },
    set: function (target, name, value, self) {
      get(self.$id, self.$member)[name] = value;
      return true;
    }
  });
  function indexed(owner, member) {
    var known = owner.$indexed || Object.create(null);
    if (known[member]) return known[member];
    var made = bare((...given) => invoke(owner.$id, member, given));
    hidden(made, "$id", owner.$id);
    hidden(made, "$handle", owner.$handle);
    hidden(made, "$member", member);
    Object.setPrototypeOf(made, awaiting);
    hidden(owner, "$indexed", known);
    return known[member] = made;
  }

  // Each character comes through here, so what get and put do is done on the spot.
  function accessor(member, kind) {
    function write(value) {
      bridge.place = this.$id * MEMBERS + member;
      bridge.value = value;
    }
    function read() {
      bridge.place = this.$id * MEMBERS + member;
      return bridge.value;
    }
    if (kind === INDEXED)
      return {get: function () { return indexed(this, member); }, set: write, configurable: true};
    if (kind !== METHOD) return {get: read, set: write, configurable: true};
    var method = function (...given) { return invoke(this.$id, member, given); };
    return {get: function () { return method; }, set: write, configurable: true};
  }
  function learn(self, name) {
    var found = typeof name === "string" ? find(self.$id, name) : -1;
    if (found < 0) return false;
    Object.defineProperty(self.$shape, name, accessor(found >> 2, found & 3));
    return true;
  }
  var unknown = new Proxy(common, {
    get: function (target, name, self) { return learn(self, name) ? self[name] : target[name]; },
    set: function (target, name, value, self) {
      if (learn(self, name)) self[name] = value; else raise(438, String(name));
      return true;
    }
  });
  function shapeOf(number) {
    if (number >= 0 && shapes[number]) return shapes[number];
    var shape = Object.create(unknown);
    hidden(shape, "$shape", shape);
    addCommons(shape);
    if (number >= 0) shapes[number] = shape;
    return shape;
  }
  function makeFacade(handle, id, shape, callable) {
    if (handle[facadeKey]) return handle[facadeKey];
    var facade = callable ? bare((...given) => invoke(id, 0, given)) : {};
    hidden(facade, "$id", id);
    hidden(facade, "$handle", handle);
    hidden(facade, "$indexed", null);
    Object.setPrototypeOf(facade, shapeOf(shape));
    Object.defineProperty(handle, facadeKey, {value: facade});
    return facade;
  }
)js";

// What scripts of the language expect beside its core, and what a host must not leave to them: calls that
// take gigabytes before anything can interrupt them. The language never had those.
constexpr std::u16string_view surroundings =
    uR"js(
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
  var NativeRegExp = RegExp;
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

)js";

constexpr std::u16string_view ending =
    uR"js(
  var builtIn = new Set(Object.getOwnPropertyNames(global));
  var shown = Object.create(null);

  return {
    makeFacade: makeFacade,
    builtIns: Array.from(builtIn),
    // A global name for a member of a facade, or for the facade itself where `found` is -1.
    show: function (name, facade, found) {
      var member = found >> 2, kind = found & 3;
      var description = {configurable: true, writable: true, value: facade};
      if (found >= 0 && kind === METHOD) {
        description.value = function (...given) { return invoke(facade.$id, member, given); };
      } else if (found >= 0) {
        var id = facade.$id;
        description = {
          configurable: true,
          get: kind === INDEXED ? function () { return indexed(facade, member); }
                                : function () { return get(id, member); },
          set: function (value) { put(id, member, value); }
        };
      }
      shown[name] = description.value;
      Object.defineProperty(global, name, description);
    },
    hide: function (name) {
      delete shown[name];
      delete global[name];
    },
    // Calls what the global name stands for at that time; gives undefined, or what was thrown, in an array.
    runner: function (name) {
      return function () {
        try {
          global[name]();
        } catch (thrown) {
          return [thrown];
        }
      };
    },
    procedures: function () {
      return Object.getOwnPropertyNames(global).filter(function (name) {
        var value = Object.getOwnPropertyDescriptor(global, name).value;
        return typeof value === "function" && !builtIn.has(name) && value !== shown[name];
      });
    }
  };
})
)js";

}  // namespace

std::u16string Prelude() {
  return std::u16string(facades).append(surroundings).append(LongLists()).append(LongJson()).append(ending);
}

}  // namespace quarlin::jscript
