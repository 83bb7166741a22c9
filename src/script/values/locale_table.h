// SPDX-License-Identifier: GPL-3.0-or-later
// The locales that scripts can choose; the first one is the usual one. For locale.cpp alone.
#pragma once

#include "script/values/locale.h"

namespace quarlin::vbs {

// Of a language in which a month has one form.
constexpr DateNames Unbent(DateNames names) {
  names.monthsOfDate = names.months;
  return names;
}

constexpr DateNames english =
    Unbent({.months = {u"January", u"February", u"March", u"April", u"May", u"June", u"July", u"August",
                       u"September", u"October", u"November", u"December"},
            .monthsOfDate = {},
            .shortMonths = {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun", u"Jul", u"Aug", u"Sep", u"Oct",
                            u"Nov", u"Dec"},
            .weekdays = {u"Sunday", u"Monday", u"Tuesday", u"Wednesday", u"Thursday", u"Friday", u"Saturday"},
            .shortWeekdays = {u"Sun", u"Mon", u"Tue", u"Wed", u"Thu", u"Fri", u"Sat"},
            .filler = u""});

constexpr DateNames german = Unbent(
    {.months = {u"Januar", u"Februar", u"März", u"April", u"Mai", u"Juni", u"Juli", u"August", u"September",
                u"Oktober", u"November", u"Dezember"},
     .monthsOfDate = {},
     .shortMonths = {u"Jan", u"Feb", u"Mrz", u"Apr", u"Mai", u"Jun", u"Jul", u"Aug", u"Sep", u"Okt", u"Nov",
                     u"Dez"},
     .weekdays = {u"Sonntag", u"Montag", u"Dienstag", u"Mittwoch", u"Donnerstag", u"Freitag", u"Samstag"},
     .shortWeekdays = {u"So", u"Mo", u"Di", u"Mi", u"Do", u"Fr", u"Sa"},
     .filler = u""});

constexpr DateNames french =
    Unbent({.months = {u"janvier", u"février", u"mars", u"avril", u"mai", u"juin", u"juillet", u"août",
                       u"septembre", u"octobre", u"novembre", u"décembre"},
            .monthsOfDate = {},
            .shortMonths = {u"janv.", u"févr.", u"mars", u"avr.", u"mai", u"juin", u"juil.", u"août",
                            u"sept.", u"oct.", u"nov.", u"déc."},
            .weekdays = {u"dimanche", u"lundi", u"mardi", u"mercredi", u"jeudi", u"vendredi", u"samedi"},
            .shortWeekdays = {u"dim.", u"lun.", u"mar.", u"mer.", u"jeu.", u"ven.", u"sam."},
            .filler = u""});

constexpr DateNames italian =
    Unbent({.months = {u"gennaio", u"febbraio", u"marzo", u"aprile", u"maggio", u"giugno", u"luglio",
                       u"agosto", u"settembre", u"ottobre", u"novembre", u"dicembre"},
            .monthsOfDate = {},
            .shortMonths = {u"gen", u"feb", u"mar", u"apr", u"mag", u"giu", u"lug", u"ago", u"set", u"ott",
                            u"nov", u"dic"},
            .weekdays = {u"domenica", u"lunedì", u"martedì", u"mercoledì", u"giovedì", u"venerdì", u"sabato"},
            .shortWeekdays = {u"dom", u"lun", u"mar", u"mer", u"gio", u"ven", u"sab"},
            .filler = u""});

constexpr DateNames spanish =
    Unbent({.months = {u"enero", u"febrero", u"marzo", u"abril", u"mayo", u"junio", u"julio", u"agosto",
                       u"septiembre", u"octubre", u"noviembre", u"diciembre"},
            .monthsOfDate = {},
            .shortMonths = {u"ene", u"feb", u"mar", u"abr", u"may", u"jun", u"jul", u"ago", u"sep", u"oct",
                            u"nov", u"dic"},
            .weekdays = {u"domingo", u"lunes", u"martes", u"miércoles", u"jueves", u"viernes", u"sábado"},
            .shortWeekdays = {u"dom", u"lun", u"mar", u"mié", u"jue", u"vie", u"sáb"},
            .filler = u"de"});

constexpr DateNames dutch = Unbent(
    {.months = {u"januari", u"februari", u"maart", u"april", u"mei", u"juni", u"juli", u"augustus",
                u"september", u"oktober", u"november", u"december"},
     .monthsOfDate = {},
     .shortMonths = {u"jan", u"feb", u"mrt", u"apr", u"mei", u"jun", u"jul", u"aug", u"sep", u"okt", u"nov",
                     u"dec"},
     .weekdays = {u"zondag", u"maandag", u"dinsdag", u"woensdag", u"donderdag", u"vrijdag", u"zaterdag"},
     .shortWeekdays = {u"zo", u"ma", u"di", u"wo", u"do", u"vr", u"za"},
     .filler = u""});

constexpr DateNames polish{
    .months = {u"styczeń", u"luty", u"marzec", u"kwiecień", u"maj", u"czerwiec", u"lipiec", u"sierpień",
               u"wrzesień", u"październik", u"listopad", u"grudzień"},
    .monthsOfDate = {u"stycznia", u"lutego", u"marca", u"kwietnia", u"maja", u"czerwca", u"lipca",
                     u"sierpnia", u"września", u"października", u"listopada", u"grudnia"},
    .shortMonths = {u"sty", u"lut", u"mar", u"kwi", u"maj", u"cze", u"lip", u"sie", u"wrz", u"paź", u"lis",
                    u"gru"},
    .weekdays = {u"niedziela", u"poniedziałek", u"wtorek", u"środa", u"czwartek", u"piątek", u"sobota"},
    .shortWeekdays = {u"niedz.", u"pon.", u"wt.", u"śr.", u"czw.", u"pt.", u"sob."},
    .filler = u""};

// Where a currency sign stands, and how an amount below 0 is written.
struct Money {
  std::u16string_view currency;
  std::u16string_view money;
  std::u16string_view debt;
  bool debtInBrackets = false;
};
constexpr Money euroBehind{u"€", u"n €", u"-n €"};

struct DateOrder {
  bool monthFirst;
  std::u16string_view signs;
  std::u16string_view shortDate;
  std::u16string_view longDate;
  std::u16string_view longTime;
  int firstDay;
};

constexpr Locale Row(std::int32_t number, std::u16string_view name, char decimal, char16_t thousands,
                     const Money& money, const DateOrder& order, const DateNames& names,
                     std::int32_t otherNumber = 0) {
  return {number,
          otherNumber,
          name,
          decimal,
          thousands,
          money.currency,
          money.money,
          money.debt,
          money.debtInBrackets,
          order.monthFirst,
          order.signs,
          order.shortDate,
          order.longDate,
          order.longTime,
          order.firstDay,
          &names};
}

constexpr std::array<Locale, 8> locales{
    Row(1033, u"en-us", '.', u',', {u"$", u"$n", u"-$n", true},
        {true, u"/-", u"M/d/yyyy", u"dddd, MMMM d, yyyy", u"h:mm:ss tt", 1}, english),
    Row(2057, u"en-gb", '.', u',', {u"£", u"£n", u"-£n"},
        {false, u"/-.", u"dd/MM/yyyy", u"dd MMMM yyyy", u"HH:mm:ss", 2}, english),
    Row(1031, u"de-de", ',', u'.', euroBehind,
        {false, u"/-.", u"dd.MM.yyyy", u"dddd, d. MMMM yyyy", u"HH:mm:ss", 2}, german),
    Row(1036, u"fr-fr", ',', noBreakSpace, euroBehind,
        {false, u"/-.", u"dd/MM/yyyy", u"dddd d MMMM yyyy", u"HH:mm:ss", 2}, french),
    Row(1040, u"it-it", ',', u'.', euroBehind,
        {false, u"/-.", u"dd/MM/yyyy", u"dddd d MMMM yyyy", u"HH:mm:ss", 2}, italian),
    Row(3082, u"es-es", ',', u'.', euroBehind,
        {false, u"/-.", u"dd/MM/yyyy", u"dddd, d 'de' MMMM 'de' yyyy", u"H:mm:ss", 2}, spanish, 1034),
    Row(1043, u"nl-nl", ',', u'.', {u"€", u"€ n", u"€ -n"},
        {false, u"/-.", u"d-M-yyyy", u"dddd d MMMM yyyy", u"HH:mm:ss", 2}, dutch),
    Row(1045, u"pl-pl", ',', noBreakSpace, {u"zł", u"n zł", u"-n zł"},
        {false, u"/-.", u"dd.MM.yyyy", u"dddd, d MMMM yyyy", u"HH:mm:ss", 2}, polish),
};

}  // namespace quarlin::vbs
