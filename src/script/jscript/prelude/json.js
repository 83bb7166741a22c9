// SPDX-License-Identifier: GPL-3.0-or-later
// JSON of long lists.

import {NativeArray, hidden, raise} from "./host.js";

// The engine's own puts every item of a list that it reads on its stack, without a look at the bounds of that.
// Here it reads pieces of a long list, and single words.
var nativeParse = JSON.parse, LONGEST_PARSED = 400000, DEEPEST_PARSED = 1000, PIECE = 200000, MOST_SINGLY = 4096,
    MOST_WRITTEN = 20000000;
// As a member of its own, whatever it is called.
function put(object, name, value) {
  if (name !== "__proto__") object[name] = value;
  else Object.defineProperty(object, name, {value: value, writable: true, enumerable: true, configurable: true});
}
function LongText(text) {
  this.text = text;
  this.at = 0;
}
LongText.prototype = {
  fail() { throw new SyntaxError("JSON.parse: Parse error"); },
  // The next character that is no blank, which is taken where it is the one that is sought.
  sees(sought) {
    for (var unit; (unit = this.text.charCodeAt(this.at)) <= 32; ++this.at)
      if (unit !== 32 && unit !== 10 && unit !== 13 && unit !== 9) this.fail();
    var seen = this.text.charAt(this.at);
    if (seen === sought) ++this.at;
    return seen;
  },
  take(sought) { if (this.sees(sought) !== sought) this.fail(); },
  word() {
    var from = this.at, delimiter = /[,\]}\s]/g;
    delimiter.lastIndex = from;
    var end = delimiter.exec(this.text);
    this.at = end === null ? this.text.length : end.index;
    if (this.at === from) this.fail();
    return nativeParse(this.text.substring(from, this.at));
  },
  quoted() {
    var from = this.at;
    for (;;) {
      this.at = this.text.indexOf('"', this.at + 1);
      if (this.at < 0) this.fail();
      var before = this.at - 1;
      while (this.text.charAt(before) === "\\") --before;
      if ((this.at - before) % 2 === 1) break;
    }
    return nativeParse(this.text.substring(from, ++this.at));
  },
  // As many items as end in front of a comma of the next piece. A piece that is cut within an item is not
  // well-formed.
  takePiece(result) {
    var piece = this.text.substr(this.at, PIECE);
    for (var end of ["},", "],", ","]) {
      var cut = piece.lastIndexOf(end) + end.length - 1, items;
      if (cut < end.length) continue;
      try { items = nativeParse("[" + piece.substring(0, cut) + "]"); } catch (e) { continue; }
      if (items.length === 0) return false;  // nothing but blanks
      for (var i = 0; i < items.length; ++i) result.push(items[i]);
      this.at += cut;
      return true;
    }
    return false;
  },
  list(depth) {
    var result = [], singly = 0, pause = 16;
    if (this.sees("]") === "]") return result;
    for (;; --singly) {
      if (singly <= 0 && !this.takePiece(result)) singly = pause = Math.min(2 * pause, MOST_SINGLY);
      if (singly > 0) result.push(this.value(depth));
      if (this.sees("]") === "]") return result;
      this.take(",");
    }
  },
  members(depth) {
    var result = {};
    if (this.sees("}") === "}") return result;
    for (;;) {
      if (this.sees() !== '"') this.fail();
      var name = this.quoted();
      this.take(":");
      put(result, name, this.value(depth));
      if (this.sees("}") === "}") return result;
      this.take(",");
    }
  },
  value(depth) {
    if (depth > DEEPEST_PARSED) this.fail();
    var first = this.sees();
    if (first === '"') return this.quoted();
    if (first !== "[" && first !== "{") return this.word();
    ++this.at;
    return first === "[" ? this.list(depth + 1) : this.members(depth + 1);
  },
  whole() {
    var result = this.value(0);
    if (this.sees() !== "") this.fail();
    return result;
  }
};
function revived(holder, name, revive) {
  var value = holder[name];
  if (typeof value === "object" && value !== null) {
    Object.keys(value).forEach(function (inner) {
      var item = revived(value, inner, revive);
      if (item === undefined) delete value[inner]; else value[inner] = item;
    });
  }
  return revive.call(holder, name, value);
}
hidden(JSON, "parse", {parse(text, reviver) {
  text = String(text);
  if (text.length <= LONGEST_PARSED) return nativeParse.call(JSON, text, reviver);
  var result = new LongText(text).whole();
  return typeof reviver === "function" ? revived({"": result}, "", reviver) : result;
}}.parse);

// The engine's own cannot be stopped. It walks all places of an array, also those that hold nothing, and what is
// held by two as often as there are ways to it; a circle it finds by itself.
function countItems(value, names, path, counted) {
  if (typeof value !== "object" || value === null || value.$id !== undefined) return;
  if (typeof value.toJSON === "function" || path.size > 100 || path.has(value)) return;
  var isList = NativeArray.isArray(value);
  if ((counted.items += isList ? value.length : 1) > MOST_WRITTEN) raise(7);
  path.add(value);
  if (isList) {
    for (var at = 0; at < value.length; ++at) countItems(value[at], names, path, counted);
  } else {
    for (var name of Object.keys(value))
      if (names === null || names.has(name)) countItems(value[name], names, path, counted);
  }
  path.delete(value);
}

// The engine takes no list of names. It does not tell whose a name is, so that any number stays.
function keeping(names) {
  var isWhole = true;
  return function (name, item) {
    if (!isWhole && !names.has(name) && String(name >>> 0) !== name) return undefined;
    isWhole = false;
    return item;
  };
}

var nativeStringify = JSON.stringify;
hidden(JSON, "stringify", {stringify(value, replacer, space) {
  var names = NativeArray.isArray(replacer) ? new Set(replacer.map(String)) : null;
  countItems(value, names, new Set(), {items: 0});
  return nativeStringify.call(JSON, value, names === null ? replacer : keeping(names), space);
}}.stringify);
