// SPDX-License-Identifier: GPL-3.0-or-later
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

import {MEMBERS, bridge, fail, get, hidden, invoke, raise} from "./host.js";

export const INDEXED = 1, METHOD = 2;
const facadeKey = Symbol("facade");
const shapes = [];

var common = Object.create(Object.prototype);
function valueOfFacade() { return bridge.Plain(this.$id); }
function textOfFacade() { return String(bridge.Plain(this.$id)); }
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
    var value = bridge.Peek(self.$id, self.$member);
    if (name === Symbol.toPrimitive) return function () { return value === null ? value : value.valueOf(); };
    var found = value[name];
    return typeof found === "function" && found.$id === undefined ? found.bind(value) : found;
  },
  set: function (target, name, value, self) {
    get(self.$id, self.$member)[name] = value;
    return true;
  }
});
export function indexed(owner, member) {
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
  if (typeof name !== "string" || name[0] === "$") return false;
  var found = bridge.Find(self.$id, name);
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
export function makeFacade(handle, id, shape, callable) {
  if (handle[facadeKey]) return handle[facadeKey];
  var facade = callable ? bare((...given) => invoke(id, 0, given)) : {};
  hidden(facade, "$id", id);
  hidden(facade, "$handle", handle);
  hidden(facade, "$indexed", null);
  Object.setPrototypeOf(facade, shapeOf(shape));
  Object.defineProperty(handle, facadeKey, {value: facade});
  return facade;
}
