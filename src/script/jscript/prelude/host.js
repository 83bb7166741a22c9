// SPDX-License-Identifier: GPL-3.0-or-later
// The way to the program's objects, by their numbers, and to its errors.

export let bridge;
export function connect(toProgram) { bridge = toProgram; }

// The engine has no `globalThis`.
export const global = Function("return this")();

// Scripts may give the name to something else.
export const NativeArray = Array;

// How many members the place of a member leaves room for.
export const MEMBERS = 65536;

export function raise(number, culprit) { bridge.Raise(number, culprit || ""); }
// For numbers that this language alone has.
export function fail(number, text) {
  var error = new Error(text);
  error.number = number | 0x800A0000;
  throw error;
}
export function hidden(target, name, value) {
  Object.defineProperty(target, name, {value: value, configurable: true, writable: true});
}
export function get(id, member) {
  bridge.place = id * MEMBERS + member;
  return bridge.value;
}
export function put(id, member, value) {
  bridge.place = id * MEMBERS + member;
  bridge.value = value;
}
export function invoke(id, member, given) {
  switch (given.length) {
    case 0: return get(id, member);
    case 1: return bridge.Call1(id, member, given[0]);
    case 2: return bridge.Call2(id, member, given[0], given[1]);
    default: return bridge.CallMany(id, member, given);
  }
}
