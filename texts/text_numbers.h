// The numbers of the system's texts: 1000 to 1435.
//
// Controls carry them in their `Tag`; messages and the English texts are looked up by them in the
// string table. A number keeps its meaning: language tables refer to it.
#pragma once

namespace vok::text_number {

// Captions of the windows.
inline constexpr int kMainWindow = 1000;
inline constexpr int kCubeWindow = 1001;
inline constexpr int kOptionWindow = 1002;
inline constexpr int kLinearDatesWindow = 1003;
inline constexpr int kLacksWindow = 1004;

// Buttons that several windows have.
inline constexpr int kOk = 1010;
inline constexpr int kCancel = 1011;
inline constexpr int kBrowse = 1012;
inline constexpr int kHelp = 1013;
inline constexpr int kClose = 1014;

// Answers to questions.
inline constexpr int kSaveAndRun = 1020;
inline constexpr int kRunAsSaved = 1021;
inline constexpr int kDiscard = 1022;
inline constexpr int kRename = 1023;
inline constexpr int kKeepNames = 1024;

// Messages.
inline constexpr int kAskDelete = 1100;
inline constexpr int kNotValidDate = 1101;
inline constexpr int kInvalidPeriodDate = 1102;
inline constexpr int kNoDataSource = 1103;
inline constexpr int kNoQelCube = 1104;
inline constexpr int kMeasures = 1105;
inline constexpr int kError = 1106;
inline constexpr int kOpenAFile = 1107;
inline constexpr int kAskSave = 1108;
inline constexpr int kWorkbookAt = 1109;
inline constexpr int kNoWorkbook = 1110;
inline constexpr int kNothingToRun = 1111;
inline constexpr int kSaveAFile = 1112;
inline constexpr int kWorkbookGone = 1113;
inline constexpr int kUnsaved = 1114;
inline constexpr int kAskRename = 1115;
inline constexpr int kGivenNames = 1116;
inline constexpr int kUnseen = 1117;
inline constexpr int kAdviceRun = 1118;
inline constexpr int kAdviceCube = 1119;
inline constexpr int kAdviceMeasures = 1120;

// The main query window.
inline constexpr int kDataSource = 1200;
inline constexpr int kPeriodSet = 1201;
inline constexpr int kHostDatabase = 1202;
inline constexpr int kCubeFile = 1203;
inline constexpr int kCubeName = 1204;
inline constexpr int kObs = 1205;
inline constexpr int kActFile = 1206;
inline constexpr int kPeriodName = 1207;
inline constexpr int kFromDate = 1208;
inline constexpr int kUntilDate = 1209;
inline constexpr int kOpeningBalance = 1210;
inline constexpr int kUpdate = 1211;
inline constexpr int kFromMonthStart = 1212;
inline constexpr int kUntilMonthEnd = 1213;
inline constexpr int kCleanDates = 1214;
inline constexpr int kAutoFill = 1215;
inline constexpr int kOptions = 1216;
inline constexpr int kSave = 1217;
inline constexpr int kDeleteDataSource = 1218;
inline constexpr int kDeletePeriods = 1219;
inline constexpr int kRunQuery = 1220;
inline constexpr int kWorkbook = 1221;
inline constexpr int kChooseCube = 1223;
inline constexpr int kSourceFrame = 1224;
inline constexpr int kPeriodsFrame = 1225;
inline constexpr int kNamePeriods = 1226;
inline constexpr int kQuantity = 1227;
inline constexpr int kCopyMeasure = 1228;

// The run of the main query window and what it left.
inline constexpr int kRunning = 1230;
inline constexpr int kStop = 1231;
inline constexpr int kStopping = 1232;
inline constexpr int kResultFrame = 1233;
inline constexpr int kResultRows = 1234;
inline constexpr int kResultNone = 1235;
inline constexpr int kResultStopped = 1236;
inline constexpr int kResultIncomplete = 1237;
inline constexpr int kOpenWorkbook = 1238;
inline constexpr int kOpenFolder = 1239;
inline constexpr int kFirstRows = 1240;
inline constexpr int kMoneyTotals = 1241;
inline constexpr int kCopy = 1242;
inline constexpr int kReportLine = 1243;

// Menus of the main query window.
inline constexpr int kMenuFile = 1260;
inline constexpr int kMenuSave = 1261;
inline constexpr int kMenuRun = 1262;
inline constexpr int kMenuClose = 1263;
inline constexpr int kMenuPeriods = 1264;
inline constexpr int kMenuAutoFill = 1265;
inline constexpr int kMenuClean = 1266;
inline constexpr int kMenuHelp = 1267;
inline constexpr int kMenuContents = 1268;
inline constexpr int kMenuNamePeriods = 1269;
inline constexpr int kMenuDeleteSource = 1270;
inline constexpr int kMenuDeletePeriods = 1271;
inline constexpr int kMenuView = 1272;
inline constexpr int kMenuOpenWorkbook = 1273;
inline constexpr int kMenuOpenFolder = 1274;
inline constexpr int kMenuCopy = 1275;
inline constexpr int kMenuChart = 1276;
inline constexpr int kMenuAbout = 1277;

// Tool tips of the main query window.
inline constexpr int kTipDataSource = 1280;
inline constexpr int kTipPeriods = 1281;
inline constexpr int kTipOpeningBalance = 1282;
inline constexpr int kTipUpdate = 1283;
inline constexpr int kTipCleanDates = 1284;
inline constexpr int kTipAutoFill = 1285;
inline constexpr int kTipObs = 1286;
inline constexpr int kTipWorkbook = 1287;
inline constexpr int kTipMeasure = 1288;
inline constexpr int kTipNamePeriods = 1289;
inline constexpr int kTipOtherDates = 1290;
inline constexpr int kTipCopyMeasure = 1291;
inline constexpr int kTipCopy = 1292;
inline constexpr int kTipHostDatabase = 1293;
inline constexpr int kTipActFile = 1294;
inline constexpr int kTipCubeFile = 1295;
inline constexpr int kTipBrowse = 1296;
inline constexpr int kTipDelete = 1297;
inline constexpr int kTipDate = 1298;

// The money-set options window.
inline constexpr int kMoneySet = 1300;
inline constexpr int kMeasure = 1301;
inline constexpr int kQtyMeasure = 1302;
inline constexpr int kCalculated = 1303;
inline constexpr int kCountMoney = 1304;
inline constexpr int kTipCalculated = 1305;

// The cube selection window.
inline constexpr int kCubeFileOfWindow = 1350;
inline constexpr int kCatalogOfWindow = 1351;
inline constexpr int kOpenCubeFile = 1352;

// The list of what a cube lacks.
inline constexpr int kLacks = 1360;
inline constexpr int kLackWhat = 1361;
inline constexpr int kLackMend = 1362;

// The dates wizard.
inline constexpr int kInterval = 1400;
inline constexpr int kAnchorDate = 1401;
inline constexpr int kEndDate = 1402;
inline constexpr int kFirstPeriod = 1403;
inline constexpr int kLastPeriod = 1404;
inline constexpr int kMonth = 1410;
inline constexpr int kQuarter = 1411;
inline constexpr int kHalfYear = 1412;
inline constexpr int kYear = 1413;

}  // namespace vok::text_number
