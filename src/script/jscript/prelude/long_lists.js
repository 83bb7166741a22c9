// SPDX-License-Identifier: GPL-3.0-or-later
// The engine does not see an interruption while one of its own functions walks a long list or text. For
// those that do not end by themselves soon enough there is a second form, written in the language; short
// lists keep the engine's.

import {NativeArray, hidden} from "./host.js";
import {NativeRegExp} from "./surroundings.js";

const LONG = 100000, SPARSE = 50000000;

function forLong(place, methods, isLong) {
  Object.getOwnPropertyNames(methods).forEach(function (name) {
    var native = place[name], slow = methods[name];
    var method = {[name](...given) {
      return isLong(this, given[0]) ? slow.apply(Object(this), given) : native.apply(this, given);
    }}[name];
    Object.defineProperty(method, "length", {value: native.length, configurable: true});
    hidden(place, name, method);
  });
}
function callable(work) {
  if (typeof work !== "function") throw new TypeError(String(work) + " is not a function");
  return work;
}
function lengthOf(list) { return Math.min(Math.max(Math.trunc(list.length) || 0, 0), 9007199254740991); }

function fold(list, work, given, from, step) {
  callable(work);
  var length = lengthOf(list), at = from < 0 ? length - 1 : 0, result = given[1], begun = given.length > 1;
  for (; at >= 0 && at < length; at += step) {
    if (!(at in list)) continue;
    result = begun ? work(result, list[at], at, list) : list[at];
    begun = true;
  }
  if (!begun) throw new TypeError("Reduce of empty array with no initial value");
  return result;
}

// What a sort works on: the items that are there; `undefined` comes behind the others.
function gathered(list, length) {
  var found = {items: [], places: 0, blanks: 0};
  function take(item) {
    ++found.places;
    if (item === undefined) ++found.blanks; else found.items.push(item);
  }
  if (length > SPARSE) {
    for (var name in list) {
      var index = Number(name);
      if (index >= 0 && index < length && String(index) === name) take(list[name]);
    }
  } else {
    for (var at = 0; at < length; ++at) if (at in list) take(list[at]);
  }
  return found;
}
function mergeSorted(items, comesAfter) {
  var from = items, to = new NativeArray(items.length), length = items.length;
  for (var width = 1; width < length; width *= 2) {
    for (var low = 0; low < length; low += 2 * width) {
      var middle = Math.min(low + width, length), high = Math.min(low + 2 * width, length);
      for (var left = low, right = middle, at = low; at < high; ++at) {
        var takesLeft = left < middle && (right >= high || !comesAfter(from[left], from[right]));
        to[at] = takesLeft ? from[left++] : from[right++];
      }
    }
    var done = from;
    from = to;
    to = done;
  }
  return from;
}
function sorted(items, compare) {
  if (compare !== undefined)
    return mergeSorted(items, function (a, b) { return compare(a, b) > 0; });
  for (var at = 0; at < items.length; ++at) items[at] = {text: String(items[at]), item: items[at]};
  items = mergeSorted(items, function (a, b) { return a.text > b.text; });
  for (at = 0; at < items.length; ++at) items[at] = items[at].item;
  return items;
}

forLong(Array.prototype, {
  includes(sought, from) {
    var length = lengthOf(this), at = Math.trunc(from) || 0;
    for (at = at < 0 ? Math.max(length + at, 0) : at; at < length; ++at) {
      var item = this[at];
      if (item === sought || (item !== item && sought !== sought)) return true;
    }
    return false;
  },
  forEach(work, self) {
    callable(work);
    for (var at = 0, length = lengthOf(this); at < length; ++at)
      if (at in this) work.call(self, this[at], at, this);
  },
  map(work, self) {
    callable(work);
    var length = lengthOf(this), result = new NativeArray(length);
    for (var at = 0; at < length; ++at) if (at in this) result[at] = work.call(self, this[at], at, this);
    return result;
  },
  filter(work, self) {
    callable(work);
    for (var at = 0, length = lengthOf(this), result = []; at < length; ++at) {
      if (!(at in this)) continue;
      var item = this[at];
      if (work.call(self, item, at, this)) result.push(item);
    }
    return result;
  },
  every(work, self) {
    callable(work);
    for (var at = 0, length = lengthOf(this); at < length; ++at)
      if (at in this && !work.call(self, this[at], at, this)) return false;
    return true;
  },
  some(work, self) {
    callable(work);
    for (var at = 0, length = lengthOf(this); at < length; ++at)
      if (at in this && work.call(self, this[at], at, this)) return true;
    return false;
  },
  reduce(...given) { return fold(this, given[0], given, 0, 1); },
  reduceRight(...given) { return fold(this, given[0], given, -1, -1); },
  sort(compare) {
    if (compare !== undefined) callable(compare);
    var length = lengthOf(this), found = gathered(this, length), items = sorted(found.items, compare);
    for (var at = 0; at < items.length; ++at) this[at] = items[at];
    for (; at < found.places; ++at) this[at] = undefined;
    if (length > SPARSE) {
      for (var name in this) if (Number(name) >= at && Number(name) < length) delete this[name];
    } else {
      for (; at < length; ++at) if (at in this) delete this[at];
    }
    return this;
  },
  toLocaleString() {
    for (var at = 0, length = lengthOf(this), result = ""; at < length; ++at) {
      var item = this[at];
      result += (at > 0 ? "," : "") + (item === undefined || item === null ? "" : item.toLocaleString());
    }
    return result;
  }
}, function (list) { return list.length > LONG; });

// The engine puts what `f(...list)` spreads on its stack and looks at the bounds of that only where it calls a
// function of the script: so the steps through a long list or text are one.
function stepsThrough(list, itemAt) {
  var at = 0;
  return {
    next() {
      if (at >= list.length) return {value: undefined, done: true};
      var item = itemAt(list, at);
      at += typeof list === "string" ? item.length : 1;
      return {value: item, done: false};
    },
    [Symbol.iterator]() { return this; }
  };
}
function stepOver(prototype, isLong, itemAt) {
  var native = prototype[Symbol.iterator];
  hidden(prototype, Symbol.iterator, {[native.name]() {
    return isLong(this) ? stepsThrough(this.valueOf(), itemAt) : native.call(this);
  }}[native.name]);
}
stepOver(Array.prototype, function (list) { return list.length > LONG; }, function (list, at) { return list[at]; });

function splitByText(text, separator, limit, parts) {
  var at = 0;
  if (separator === "") {
    for (; at < text.length && parts.length < limit; ++at) parts.push(text.charAt(at));
    return parts;
  }
  for (var end; (end = text.indexOf(separator, at)) >= 0 && parts.length < limit; at = end + separator.length)
    parts.push(text.substring(at, end));
  if (parts.length < limit) parts.push(text.substring(at));
  return parts;
}
function splitByPattern(text, pattern, limit, parts) {
  var search = new NativeRegExp(pattern.source, pattern.flags.replace("y", "").replace("g", "") + "g");
  for (var at = 0, match; parts.length < limit && (match = search.exec(text)) !== null;) {
    var end = match.index + match[0].length;
    if (match.index >= text.length) break;
    if (end === at) { search.lastIndex = at + 1; continue; }
    parts.push(text.substring(at, match.index));
    for (var group = 1; group < match.length && parts.length < limit; ++group) parts.push(match[group]);
    search.lastIndex = at = end;
  }
  if (parts.length < limit) parts.push(text.substring(at));
  return parts;
}
function isLongText(text) { return (typeof text === "string" || text instanceof String) && text.length > LONG; }

stepOver(String.prototype, isLongText,
         function (text, at) { return String.fromCodePoint(text.codePointAt(at)); });

forLong(String.prototype, {
  split(separator, limit) {
    var most = limit === undefined ? 4294967295 : limit >>> 0, text = String(this);
    if (most === 0) return [];
    if (separator === undefined) return [text];
    if (separator instanceof NativeRegExp) return splitByPattern(text, separator, most, []);
    return splitByText(text, String(separator), most, []);
  }
}, isLongText);
forLong(String.prototype, {
  match(pattern) {
    var text = String(this), found = [], match;
    pattern.lastIndex = 0;
    while ((match = pattern.exec(text)) !== null) {
      found.push(match[0]);
      if (match[0] === "") ++pattern.lastIndex;
    }
    return found.length > 0 ? found : null;
  }
}, function (text, pattern) { return isLongText(text) && pattern instanceof NativeRegExp && pattern.global; });
