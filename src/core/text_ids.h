#pragma once

namespace corvrec
{

// Number of a text in the string table (src/ui/widgets/corvrec_it.ts). Listed here are the texts that code
// shows; captions used only by forms are named there, in the dynamic property "tag". Numbers are fixed:
// translations refer to them.
enum class TextId : int {};

namespace text
{

inline constexpr TextId yes{6};
inline constexpr TextId no{7};
inline constexpr TextId error{50};
inline constexpr TextId attention{51};

// Modem dialog
inline constexpr TextId genericModem{10501};
inline constexpr TextId phoneNumberMissing{10502};
inline constexpr TextId attemptsMissing{10503};
inline constexpr TextId attemptsBelowOne{10504};
inline constexpr TextId initStringMissing{10505};
inline constexpr TextId resetStringMissing{10506};

// Site editor: checks on OK
inline constexpr TextId startTimeInvalid{10701};
inline constexpr TextId intervalInvalid{10702};
inline constexpr TextId weekdayMissing{10703};
inline constexpr TextId dataFileMissing{10704};
inline constexpr TextId exchangeFileMissing{10705};
inline constexpr TextId historyFileMissing{10706};
inline constexpr TextId logFileMissing{10707};
inline constexpr TextId siteNameMissing{10708};
inline constexpr TextId siteCodeMissing{10709};
inline constexpr TextId collisionFileNames{10710};
inline constexpr TextId collisionMatch{10711};
inline constexpr TextId collisionThoseOfSite{10712};
inline constexpr TextId collisionToAvoidLoss{10713};
inline constexpr TextId collisionAdvice{10714};
inline constexpr TextId collisionSaveAnyway{10715};
inline constexpr TextId siteNotUnique{10716};

// Weekdays, Monday to Sunday
inline constexpr TextId monday{10717};
inline constexpr TextId tuesday{10718};
inline constexpr TextId wednesday{10719};
inline constexpr TextId thursday{10720};
inline constexpr TextId friday{10721};
inline constexpr TextId saturday{10722};
inline constexpr TextId sunday{10723};

// Schedule kinds, their help and the unit of their interval
inline constexpr TextId continuous{10724};
inline constexpr TextId hourly{10725};
inline constexpr TextId daily{10726};
inline constexpr TextId weekly{10727};
inline constexpr TextId continuousHelp{10728};
inline constexpr TextId hourlyHelp{10729};
inline constexpr TextId dailyHelp{10730};
inline constexpr TextId weeklyHelp{10731};
inline constexpr TextId hoursFrom{10732};
inline constexpr TextId daysAt{10733};
inline constexpr TextId weeksAt{10734};

// Handshake and parity
inline constexpr TextId noHandshake{10735};
inline constexpr TextId noParity{10736};
inline constexpr TextId evenParity{10737};
inline constexpr TextId oddParity{10738};

// File and disk alerts
inline constexpr TextId fileTimeOutMissing{10801};
inline constexpr TextId diskThresholdMissing{10802};

// Site list
inline constexpr TextId siteColumn{1005};
inline constexpr TextId codeColumn{1006};
inline constexpr TextId enabledColumn{1007};
inline constexpr TextId scheduleColumn{1008};
inline constexpr TextId continuousNotAlone{11001};
inline constexpr TextId removingSite{11002};
inline constexpr TextId wantToContinue{11003};
inline constexpr TextId fileUnreadable{11005};
inline constexpr TextId comPortUnreadable{11006};
inline constexpr TextId application{11007};

// Line transformations: help
inline constexpr TextId fixCrLfHelp{11101};
inline constexpr TextId addDateHelp{11102};
inline constexpr TextId dropNullsHelp{11103};
inline constexpr TextId addTimeHelp{11104};

// Modem session
inline constexpr TextId connecting{10601};
inline constexpr TextId connectionNoReply{10602};
inline constexpr TextId connection{10603};
inline constexpr TextId disconnecting{10604};
inline constexpr TextId disconnectionNoReply{10605};
inline constexpr TextId disconnection{10606};

// Buffer status and clock
inline constexpr TextId notAvailable{915};
inline constexpr TextId dateInvalid{10901};
inline constexpr TextId timeInvalid{10902};
inline constexpr TextId portNotOpened{10903};
inline constexpr TextId statusNotReceived{10904};
inline constexpr TextId none{10905};
inline constexpr TextId part{10906};
inline constexpr TextId full{10907};
inline constexpr TextId unknownVersion{10908};
inline constexpr TextId selectorInactive{10909};
inline constexpr TextId printerInactive{10912};
inline constexpr TextId noFault{10913};
inline constexpr TextId powerCut{10914};
inline constexpr TextId lowBattery{10915};
inline constexpr TextId faultsUndetectable{10916};
inline constexpr TextId absent{10917};
inline constexpr TextId present{10918};

// From 20001 on: texts added after the numbered ones above
inline constexpr TextId saveIncomplete{20001};
inline constexpr TextId setup{20003};
inline constexpr TextId siteList{20004};
inline constexpr TextId weekdays{20005};
inline constexpr TextId startTime{20006};
inline constexpr TextId notFound{20011};
inline constexpr TextId guideText{20012};
inline constexpr TextId readOnly{20013};
inline constexpr TextId duplicate{20014};
inline constexpr TextId browseDataFile{20015};
inline constexpr TextId browseExchangeFile{20016};
inline constexpr TextId browseHistoryFile{20017};
inline constexpr TextId xonIsControl{20018};
inline constexpr TextId xoffIsControl{20019};
inline constexpr TextId xonCharacter{20020};
inline constexpr TextId xoffCharacter{20021};
inline constexpr TextId listFull{20022};

} // namespace text

} // namespace corvrec
