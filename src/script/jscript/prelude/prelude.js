// SPDX-License-Identifier: GPL-3.0-or-later
// The part of the language's surroundings that is written in the language itself, and what the engine calls of it.

import {connect, get, global, invoke, put} from "./host.js";
import {INDEXED, METHOD, indexed, makeFacade} from "./facades.js";
import "./surroundings.js";
import "./long_lists.js";
import "./json.js";

export {connect, makeFacade};

const builtIn = new Set(Object.getOwnPropertyNames(global));
const shown = Object.create(null);

export const builtIns = Array.from(builtIn);

// A global name for a member of a facade, or for the facade itself where `found` is -1.
export function show(name, facade, found) {
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
}

export function hide(name) {
  delete shown[name];
  delete global[name];
}

// Calls what the global name stands for at that time; gives undefined, or what was thrown, in an array.
export function runner(name) {
  return function () {
    try {
      global[name]();
    } catch (thrown) {
      return [thrown];
    }
  };
}

export function procedures() {
  return Object.getOwnPropertyNames(global).filter(function (name) {
    var value = Object.getOwnPropertyDescriptor(global, name).value;
    return typeof value === "function" && !builtIn.has(name) && value !== shown[name];
  });
}
