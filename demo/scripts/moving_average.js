// SPDX-License-Identifier: GPL-3.0-or-later
// Shows the average of the last ten weights beside each weight that comes in: moving_average.vbs, written in
// the other language. The list offers it as soon as the folder also holds a .vbs file.

var wanted = 10;   // how many weights are averaged
var history = [];  // the last weights, the oldest first

// Runs for every complete answer. What stands in OutputString afterwards is what the program goes on with.
function ReceiveString() {
  var line = StringReceived.InputString;
  StringReceived.OutputString = line;

  var weight = weightIn(line);
  if (weight === null) return;
  history.push(weight);
  if (history.length > wanted) history.shift();

  var shown = average().toFixed(3);
  FrmCommand.txtOutput.Text = shown;
  AppendLog.RichAppendText(0xFF0000, "average of " + history.length + ": " + shown + "\r\n");  // blue
}

// The weight in a line such as "ST,GS,+00012.345 kg", or null when there is none.
function weightIn(line) {
  var weight = parseFloat(line.substr(6, 10));
  return line.charAt(5) === "," && !isNaN(weight) ? weight : null;
}

function average() {
  var sum = 0;
  for (var i = 0; i < history.length; i++) sum += history[i];
  return sum / history.length;
}
