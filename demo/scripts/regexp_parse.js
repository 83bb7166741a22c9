// SPDX-License-Identifier: GPL-3.0-or-later
// Takes answers apart by patterns and writes in plain words what they say: regexp_parse.vbs, written in the
// other language. Add rows for your own instrument; $1, $2 ... stand for the parts in round brackets.

var rows = [
  [/^ST,GS,([+-])0*(\d+\.\d+) *(\w+)/, "stable, gross $1$2 $3"],
  [/^ST,NT,([+-])0*(\d+\.\d+) *(\w+)/, "stable, net $1$2 $3"],
  [/^US,\w+,([+-])0*(\d+\.\d+) *(\w+)/, "settling at $1$2 $3"],
  [/^SN,0*(\d+)/, "serial number $1"],
  [/^UNIT,(\w+)/, "weighs in $1 now"],
  [/^VER,(\d+)\.(\d+)/, "version $1, revision $2"],
  [/^(TARE|ZERO) OK/, "$1 done"]
];

function ReceiveString() {
  var line = StringReceived.InputString;
  StringReceived.OutputString = line;

  var words = inWords(line);
  if (words === "") AppendLog.RichAppendText(0x0000FF, "not understood\r\n");  // red
  else AppendLog.RichAppendText(0xFF00FF, words + "\r\n");                     // magenta
  FrmCommand.txtOutput.Text = words;
}

// The words of the first row that fits, or nothing.
function inWords(line) {
  for (var i = 0; i < rows.length; i++) {
    var found = rows[i][0].exec(line);
    if (found !== null) return found[0].replace(rows[i][0], rows[i][1]);
  }
  return "";
}
