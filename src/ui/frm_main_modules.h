// SPDX-License-Identifier: GPL-3.0-or-later
// What works on the controls of FrmMain: the modules of all rooms, put together. For frm_main*.cpp alone.
#pragma once

#include "calculator/frm_calculator.h"
#include "connect/connection.h"
#include "connect/low_latency.h"
#include "connect/modem_lines.h"
#include "controls/folder_watch.h"
#include "curves/frm_plot.h"
#include "display/traffic.h"
#include "exchange/exchange.h"
#include "exchange/interval_statistics.h"
#include "exchange/sender.h"
#include "link/link.h"
#include "receive/character_conversion.h"
#include "receive/parser.h"
#include "receive/receive_loop.h"
#include "script/edit/frm_editor.h"
#include "script/script_host.h"
#include "testmodes/dialog.h"
#include "testmodes/error_reports.h"
#include "testmodes/error_rows.h"
#include "transmit/by_hand.h"
#include "transmit/offered_list.h"
#include "ui/frm_main.h"
#include "welcome/first_steps.h"

namespace quarlin {

inline constexpr std::string_view commandFile = "Command.txt";
inline constexpr std::string_view parserFile = "Parser.txt";

// Everything that works on the controls, the lower rooms first.
struct FrmMain::Modules {
  Modules(FrmMain& frm, FrmMainControls& controls, Surroundings& around)
      : status(around.loop, controls.status),
        folder(around.loop, around.folder.Path()),
        prompts(around.loop, around.prompts),
        link(around.loop, around.devices, controls.link),
        intervals(around.loop, controls.link),
        commands(controls.cycle.CBOSEND, around.folder, commandFile),
        parserFormats(controls.receive.cboParser, around.folder, parserFile),
        connection(around.loop, link, controls.connection, prompts, status),
        lowLatency(link, controls.connection, status),
        modem(link, controls.modem),
        sequence(controls.cycle, around.folder),
        expander(
            controls.macro,
            [this, &controls] {
              return !controls.cycle.chkSequence.Checked() || sequence.Empty() || sequence.LineNumber() == 1;
            },
            around.random),
        parser(around.loop.Clocks()),
        conversion(controls.receive, around.folder, status),
        record(around.loop.Clocks()),
        exchange(around.loop, controls.run, record),
        logs(around.loop, controls.display, around.folder,
             [&frm](std::string_view text) { frm.Trouble(text); }),
        traffic(around.loop, controls.display, logs),
        sender({link, expander, exchange, traffic, controls.run, controls.framing, controls.counters}),
        cycle({around.loop, controls.cycle, controls.run, controls.macro, controls.counters, link, expander,
               exchange, intervals, sender, traffic, sequence, status}),
        byHand({around.loop, controls.file, controls.run, controls.counters, link, exchange, sender, traffic,
                status},
               controls.link, prompts, around.folder, [&frm](std::string_view text) { frm.Trouble(text); }),
        errors({controls.test, controls.run, controls.counters, controls.link, controls.display, traffic,
                exchange}),
        errorRows(around.loop.Clocks(), record, controls.display.txtric),
        plot(around.loop, controls.curves, record, around.folder),
        receive({around.loop, controls.receive, controls.run, controls.link, controls.counters, link,
                 expander, parser, conversion, exchange, traffic, status}),
        dialog({around.loop, link, expander, sender, traffic, status}, around.folder),
        scriptOutput(around.loop),
        script({around.loop, controls.script, around.folder, prompts, around.engines, status,
                [this](std::string_view text, Color color) {
                  traffic.Append(text, color);
                  scriptOutput.Write(text);
                },
                around.lastResort}),
        editor({around.loop, around.folder, script, prompts, scriptOutput, frm.Collection()}),
        calculator(around.loop, controls.numbers),
        configurations({frm.Collection(), around.folder, prompts, status}),
        welcome(around.bundle, around.folder, status,
                {around.loop, connection, controls.connection, controls.framing, controls.receive,
                 controls.link, controls.cycle, controls.run, status}),
        session({around.loop, connection, link, cycle, exchange, sequence, script, logs, prompts, status,
                 controls.counters, around.headless}) {}

  StatusNote status;
  FolderWatch folder;  // for whoever wants to know that a file of the program folder has changed
  TimedPrompts prompts;
  Link link;
  IntervalStatistics intervals;
  OfferedList commands;
  OfferedList parserFormats;
  Connection connection;
  LowLatency lowLatency;
  ModemLines modem;
  Sequence sequence;
  Expander expander;
  Parser parser;
  CharacterConversion conversion;
  RunRecord record;
  Exchange exchange;
  TrafficLogs logs;
  Traffic traffic;
  Sender sender;
  Cycle cycle;
  ByHand byHand;
  ErrorReports errors;
  ErrorRows errorRows;
  FrmPlot plot;
  ReceiveLoop receive;
  Dialog dialog;
  ScriptOutput scriptOutput;
  ScriptHost script;  // ends before them: a script's last code may use all of the above
  FrmEditor editor;
  FrmCalculator calculator;
  Configurations configurations;
  FirstSteps welcome;
  Session session;
};

}  // namespace quarlin
