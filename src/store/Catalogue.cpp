#include "store/Catalogue.h"

#include "common/ReplacingFile.h"
#include "common/TextFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <sqlite3.h>
#include <sys/stat.h>

#include <array>

namespace pvardo::store {

namespace {

// The columns of each table, as the office's forms and letters number them.
// The order of the places is the order of ColumnMap and of the merge fields
// of the templates: it must not change.

// PBPROJ: 105 places
constexpr ColumnDef kPBPROJPlaces[] = {
    {"PBCASE", FieldKind::Text, 20, 1},
    {"PBLOCN1", FieldKind::Text, 80, 7},
    {"PBSUBDIV", FieldKind::Text, 24, 60},
    {"PBSTATUS", FieldKind::Text, 1, 0},
    {"PBFILEDATE", FieldKind::Date, 8, 0},
    {"PBSTARTDATE", FieldKind::Date, 8, 0},
    {"PBEXPIRYDATE", FieldKind::Date, 8, 0},
    {"SEC", FieldKind::Text, 6, 2},
    {"BLK", FieldKind::Text, 6, 3},
    {"LOT", FieldKind::Text, 6, 4},
    {"LOD", FieldKind::Text, 4, 5},
    {"SUB", FieldKind::Text, 4, 6},
    {"SUD", FieldKind::Text, 4, 0},
    {"PBAPPNAME1", FieldKind::Text, 40, 8},
    {"PBAPPADDR1", FieldKind::Text, 80, 9},
    {"PBAPPEMAIL", FieldKind::Text, 40, 11},
    {"PBAPPTEL", FieldKind::Text, 20, 10},
    {"PBOWNRNAME1", FieldKind::Text, 40, 12},
    {"PBOWNRADDR1", FieldKind::Text, 80, 13},
    {"PBOWNEMAIL", FieldKind::Text, 40, 15},
    {"PBOWNTEL", FieldKind::Text, 20, 14},
    {"PBPROXYNAME1", FieldKind::Text, 40, 16},
    {"PBPROXYADDR1", FieldKind::Text, 80, 17},
    {"PBPROXYEMAIL", FieldKind::Text, 40, 19},
    {"PBPROXYTEL", FieldKind::Text, 20, 18},
    {"PBCONTACTNAME1", FieldKind::Text, 40, 20},
    {"PBCONTACTADDR1", FieldKind::Text, 80, 21},
    {"PBCONTACTEMAIL", FieldKind::Text, 40, 57},
    {"PBCONTACTTEL", FieldKind::Text, 20, 25},
    {"PBPROJNAME", FieldKind::Text, 50, 69},
    {"PBTOTAREASTRUC", FieldKind::Text, 10, 30},
    {"PBTOTAREAIMPRV", FieldKind::Text, 10, 34},
    {"PBTYPE", FieldKind::Text, 30, 0},
    {"PBUSE", FieldKind::Text, 30, 0},
    {"PBACC", FieldKind::Text, 30, 0},
    {"PBPROJDESC", FieldKind::LongText, 0, 24},
    {"PBCOST", FieldKind::Text, 12, 22},
    {"PBVALUE", FieldKind::Text, 12, 23},
    {"PBCURZONE", FieldKind::Text, 30, 0},
    {"PBLOTAREASQF", FieldKind::Text, 10, 28},
    {"PBLOTAREAACR", FieldKind::Text, 10, 29},
    {"PBLOTWIDTH", FieldKind::Text, 10, 26},
    {"PBLOTDEPTH", FieldKind::Text, 10, 27},
    {"PBLOTCOVPCT", FieldKind::Text, 6, 31},
    {"PBLOTIMPCOVPCT", FieldKind::Text, 6, 32},
    {"PBUSABLESQF", FieldKind::Text, 10, 36},
    {"PBSTRUCHEIGHT", FieldKind::Text, 6, 61},
    {"PBSTORIES", FieldKind::Text, 5, 35},
    {"PBFLOAD", FieldKind::Text, 10, 38},
    {"PBUNITS", FieldKind::Text, 5, 37},
    {"PBBEDROOMS", FieldKind::Text, 5, 40},
    {"PBBATHROOMS", FieldKind::Text, 5, 41},
    {"PBSTRUCTYPE", FieldKind::Text, 20, 0},
    {"PBFOOTERDEPTH", FieldKind::Text, 6, 42},
    {"PBFOOTERMAT", FieldKind::Text, 20, 0},
    {"PBFOOTTYPE", FieldKind::Text, 20, 0},
    {"PBSETBFRONT", FieldKind::Text, 6, 44},
    {"PBSETBLEFT", FieldKind::Text, 6, 47},
    {"PBSETBRIGHT", FieldKind::Text, 6, 46},
    {"PBSETBREAR", FieldKind::Text, 6, 45},
    {"PBDRIVEWAYWIDTH", FieldKind::Text, 5, 55},
    {"PBNUMOFFPARKING", FieldKind::Text, 5, 53},
    {"PBNUMOFFLOADING", FieldKind::Text, 5, 54},
    {"PBSIGNDIM", FieldKind::Text, 16, 39},
    {"PBSIGNLIGHTED", FieldKind::Text, 1, 0},
    {"PBMISCNOTES", FieldKind::LongText, 0, 56},
    {"PBELECTRIC", FieldKind::Text, 15, 51},
    {"PBWATER", FieldKind::Text, 15, 49},
    {"PBGAS", FieldKind::Text, 15, 52},
    {"PBSEWAGE", FieldKind::Text, 15, 50},
    {"PBMISCNOTES", FieldKind::LongText, 0, 56},
    {"PBSITEPLAN", FieldKind::Text, 1, 0},
    {"PBENVIRONSTUDY", FieldKind::Text, 1, 0},
    {"PBGENNOTES", FieldKind::LongText, 0, 58},
    {"PBTRAFFICSTUDY", FieldKind::Text, 1, 0},
    {"PBEXTRA1", FieldKind::Text, 30, 0},
    {"ZSETBACKNOTE", FieldKind::LongText, 0, 48},
    {"PBEXTRA2", FieldKind::Text, 30, 0},
    {"FILEMONTH", FieldKind::Text, 8, 0},
    {"FILEDATE", FieldKind::Text, 8, 0},
    {"FILEYEAR", FieldKind::Text, 8, 0},
    {"BLDGPERMYY", FieldKind::Text, 8, 0},
    {"BLDGPRM", FieldKind::Text, 8, 0},
    {"PBFE", FieldKind::Text, 1, 0},
    {"PBFW", FieldKind::Text, 1, 0},
    {"PBFG", FieldKind::Text, 1, 0},
    {"PBFS", FieldKind::Text, 1, 0},
    {"PBMAPNO", FieldKind::Text, 30, 59},
    {"PBGISCOORD", FieldKind::Text, 20, 0},
    {"PBEASTGRID", FieldKind::Text, 10, 0},
    {"PBNORTHGRID", FieldKind::Text, 10, 0},
    {"PBSCHOOLDIST", FieldKind::Text, 15, 63},
    {"PBAMBUDIST", FieldKind::Text, 15, 67},
    {"PBFIREDIST", FieldKind::Text, 15, 64},
    {"PBLIGHTDIST", FieldKind::Text, 15, 66},
    {"PBWATERDIST", FieldKind::Text, 15, 65},
    {"PBSEWERDIST", FieldKind::Text, 15, 68},
    {"PBCALLCENTER", FieldKind::Text, 30, 43},
    {"PBKNOXLOC", FieldKind::Text, 30, 70},
    {"PBALARM", FieldKind::Text, 30, 71},
    {"PBFALARM", FieldKind::Text, 1, 0},
    {"PBBALARM", FieldKind::Text, 1, 0},
    {"PBSALARM", FieldKind::Text, 1, 0},
    {"BYUSER", FieldKind::Text, 18, 0},
    {"TSTAMP", FieldKind::DateTime, 8, 0},
};
// PBFEES: 24 places
constexpr ColumnDef kPBFEESPlaces[] = {
    {"SEQ", FieldKind::Counter, 0, 0},
    {"PBFCASE", FieldKind::Text, 20, 1},
    {"PBFSTATUS", FieldKind::Text, 1, 0},
    {"PBFEXTRA", FieldKind::Text, 30, 0},
    {"PBFFILEDATE", FieldKind::Date, 8, 0},
    {"PBFDUEDATE", FieldKind::Date, 8, 0},
    {"PBFPAIDDATE", FieldKind::Date, 8, 0},
    {"PBFPAYMETHOD", FieldKind::Text, 20, 0},
    {"PBFPAYID", FieldKind::Text, 14, 5},
    {"PBFPAYDESC", FieldKind::Text, 35, 1},
    {"PBFAMOUNT", FieldKind::Money, 8, 2},
    {"PBFPAID", FieldKind::Money, 8, 3},
    {"PBFBALDUE", FieldKind::Money, 8, 4},
    {"PBFAPPNAME1", FieldKind::Text, 40, 6},
    {"PBFAPPADDR1", FieldKind::Text, 80, 7},
    {"PBFAPPEMAIL", FieldKind::Text, 40, 9},
    {"PBFAPPTEL", FieldKind::Text, 20, 8},
    {"PBFPROJNAME", FieldKind::Text, 50, 0},
    {"PBFPAIDMM", FieldKind::Text, 4, 0},
    {"PBFPAIDYY", FieldKind::Text, 4, 0},
    {"PBFDUEMM", FieldKind::Text, 4, 0},
    {"PBFDUEYY", FieldKind::Text, 4, 0},
    {"BYUSER", FieldKind::Text, 20, 0},
    {"TSTAMP", FieldKind::DateTime, 8, 0},
};
// BONDS: 24 places
constexpr ColumnDef kBONDSPlaces[] = {
    {"SEQ", FieldKind::Counter, 0, 0},
    {"BCASE", FieldKind::Text, 20, 0},
    {"BSTATUS", FieldKind::Text, 1, 0},
    {"BEXTRA", FieldKind::Text, 30, 0},
    {"BFILEDATE", FieldKind::Date, 8, 0},
    {"BDUEDATE", FieldKind::Date, 8, 0},
    {"BPDDATE", FieldKind::Date, 8, 0},
    {"BPAYMETHOD", FieldKind::Text, 20, 0},
    {"BPAYID", FieldKind::Text, 14, 5},
    {"BPAYDESC", FieldKind::Text, 35, 1},
    {"BAMOUNT", FieldKind::Money, 8, 2},
    {"BPAID", FieldKind::Money, 8, 3},
    {"BBALDUE", FieldKind::Money, 8, 4},
    {"BAPPNAME1", FieldKind::Text, 40, 6},
    {"BAPPADDR1", FieldKind::Text, 80, 7},
    {"BAPPEMAIL", FieldKind::Text, 40, 9},
    {"BAPPTEL", FieldKind::Text, 20, 8},
    {"BPROJNAME", FieldKind::Text, 50, 0},
    {"BPIDMM", FieldKind::Text, 4, 0},
    {"BPIDYY", FieldKind::Text, 4, 0},
    {"BDUEMM", FieldKind::Text, 4, 0},
    {"BDUEYY", FieldKind::Text, 4, 0},
    {"BYUSER", FieldKind::Text, 20, 0},
    {"TSTAMP", FieldKind::DateTime, 8, 0},
};
// MEETING: 23 places
constexpr ColumnDef kMEETINGPlaces[] = {
    {"RECNO", FieldKind::Counter, 0, 0},
    {"MYEAR", FieldKind::Text, 6, 0},
    {"MJUL", FieldKind::Number, 0, 0},
    {"MDATE", FieldKind::Date, 0, 0},
    {"MTIME", FieldKind::Time, 0, 0},
    {"MDUR", FieldKind::Number, 0, 0},
    {"MRMID", FieldKind::Text, 12, 0},
    {"MNAME", FieldKind::Text, 30, 0},
    {"MLOC", FieldKind::Text, 80, 0},
    {"MFREQ", FieldKind::Text, 1, 0},
    {"MREC", FieldKind::Text, 4, 0},
    {"MBY", FieldKind::Text, 30, 0},
    {"EXTRA1", FieldKind::Text, 8, 0},
    {"EXTRA2", FieldKind::Text, 20, 0},
    {"MTYPE", FieldKind::Text, 30, 0},
    {"MSTATUS", FieldKind::Text, 12, 0},
    {"MPROJ", FieldKind::Text, 20, 0},
    {"MPNAM", FieldKind::Text, 30, 0},
    {"BYUSER", FieldKind::Text, 20, 0},
    {"TSTAMP", FieldKind::DateTime, 8, 0},
    {"MRECNO", FieldKind::Text, 20, 0},
    {"MNOTES", FieldKind::LongText, 0, 0},
    {"MINUTES", FieldKind::LongText, 0, 0},
};
// ACTIONS: 23 places
constexpr ColumnDef kACTIONSPlaces[] = {
    {"SEQ", FieldKind::Counter, 0, 0},
    {"AYEAR", FieldKind::Text, 6, 0},
    {"AJUL", FieldKind::Number, 0, 0},
    {"ACDATE", FieldKind::Date, 0, 0},
    {"ATIME", FieldKind::Time, 0, 0},
    {"ADUR", FieldKind::Number, 0, 0},
    {"ARMID", FieldKind::Text, 12, 0},
    {"ANAME", FieldKind::Text, 30, 0},
    {"ALOC", FieldKind::Text, 80, 0},
    {"AFREQ", FieldKind::Text, 1, 0},
    {"AREC", FieldKind::Text, 4, 0},
    {"ABY", FieldKind::Text, 30, 0},
    {"EXTRA1", FieldKind::Text, 8, 0},
    {"EXTRA2", FieldKind::Text, 20, 0},
    {"ATYPE", FieldKind::Text, 30, 0},
    {"ASTATUS", FieldKind::Text, 12, 0},
    {"APROJ", FieldKind::Text, 20, 0},
    {"APNAM", FieldKind::Text, 30, 0},
    {"BYUSER", FieldKind::Text, 20, 0},
    {"TSTAMP", FieldKind::DateTime, 8, 0},
    {"APRECNO", FieldKind::Text, 20, 0},
    {"ANOTES", FieldKind::LongText, 0, 0},
    {"MINUTES", FieldKind::LongText, 0, 0},
};
// ISSUES: 23 places
constexpr ColumnDef kISSUESPlaces[] = {
    {"SEQ", FieldKind::Counter, 0, 0},
    {"ISYEAR", FieldKind::Text, 6, 0},
    {"ISJUL", FieldKind::Number, 0, 0},
    {"ISDATE", FieldKind::Date, 0, 0},
    {"ISTIME", FieldKind::Time, 0, 0},
    {"ISDUR", FieldKind::Number, 0, 0},
    {"ISRMID", FieldKind::Text, 12, 0},
    {"ISNAME", FieldKind::Text, 30, 0},
    {"ISLOC", FieldKind::Text, 80, 0},
    {"ISFREQ", FieldKind::Text, 1, 0},
    {"IREC", FieldKind::Text, 4, 0},
    {"ISBY", FieldKind::Text, 30, 0},
    {"EXTRA1", FieldKind::Text, 8, 0},
    {"EXTRA2", FieldKind::Text, 20, 0},
    {"ISTYPE", FieldKind::Text, 30, 0},
    {"ISTATUS", FieldKind::Text, 12, 0},
    {"ISPROJ", FieldKind::Text, 20, 0},
    {"ISPNAM", FieldKind::Text, 30, 0},
    {"BYUSER", FieldKind::Text, 20, 0},
    {"TSTAMP", FieldKind::DateTime, 8, 0},
    {"ISRECNO", FieldKind::Text, 20, 0},
    {"ISNOTES", FieldKind::LongText, 0, 0},
    {"MINUTES", FieldKind::LongText, 0, 0},
};
// PBSEQRA: 17 places
constexpr ColumnDef kPBSEQRAPlaces[] = {
    {"SEQ", FieldKind::Counter, 0, 0},
    {"SCASE", FieldKind::Text, 20, 0},
    {"STATUS", FieldKind::Text, 1, 0},
    {"SCSTATUS", FieldKind::Text, 30, 0},
    {"SDATE", FieldKind::Date, 8, 0},
    {"SRDATE", FieldKind::Text, 12, 0},
    {"SORIGINATOR", FieldKind::Text, 40, 0},
    {"STO", FieldKind::Text, 30, 0},
    {"SADDR", FieldKind::Text, 80, 0},
    {"SCOMPLETED", FieldKind::Text, 1, 0},
    {"SNOTES", FieldKind::LongText, 0, 0},
    {"BYUSER", FieldKind::Text, 20, 0},
    {"TSTAMP", FieldKind::DateTime, 8, 0},
    {"SDOC", FieldKind::Text, 50, 0},
    {"SRES", FieldKind::LongText, 0, 0},
    {"SPHONE", FieldKind::Text, 14, 0},
    {"EXTRA1", FieldKind::Text, 50, 0},
};
// PBAGENCY: 17 places
constexpr ColumnDef kPBAGENCYPlaces[] = {
    {"SEQ", FieldKind::Counter, 0, 0},
    {"ACASE", FieldKind::Text, 20, 0},
    {"ASTATUS", FieldKind::Text, 1, 0},
    {"ACSTATUS", FieldKind::Text, 30, 0},
    {"ACDATE", FieldKind::Date, 8, 0},
    {"ARDATE", FieldKind::Text, 12, 0},
    {"AORIGINATOR", FieldKind::Text, 40, 0},
    {"ATO", FieldKind::Text, 30, 0},
    {"AGDDR", FieldKind::Text, 80, 0},
    {"ACOMPLETED", FieldKind::Text, 1, 0},
    {"ANOTES", FieldKind::LongText, 0, 0},
    {"BYUSER", FieldKind::Text, 20, 0},
    {"TSTAMP", FieldKind::DateTime, 8, 0},
    {"AGDOC", FieldKind::Text, 50, 0},
    {"AGRES", FieldKind::LongText, 0, 0},
    {"APHONE", FieldKind::Text, 14, 0},
    {"EXTRA1", FieldKind::Text, 50, 0},
};
// PBMAPS: 17 places
constexpr ColumnDef kPBMAPSPlaces[] = {
    {"SEQ", FieldKind::Counter, 0, 0},
    {"MPCASE", FieldKind::Text, 20, 0},
    {"STATUS", FieldKind::Text, 1, 0},
    {"MPCSTATUS", FieldKind::Text, 30, 0},
    {"MPDATE", FieldKind::Date, 8, 0},
    {"MPRDATE", FieldKind::Text, 12, 0},
    {"MPORIGINATOR", FieldKind::Text, 40, 0},
    {"MPTO", FieldKind::Text, 30, 0},
    {"MPADDR", FieldKind::Text, 80, 0},
    {"MPCOMPLETED", FieldKind::Text, 1, 0},
    {"MPNOTES", FieldKind::LongText, 0, 0},
    {"BYUSER", FieldKind::Text, 20, 0},
    {"TSTAMP", FieldKind::DateTime, 8, 0},
    {"MPDOC", FieldKind::Text, 50, 0},
    {"MPRES", FieldKind::LongText, 0, 0},
    {"MPHONE", FieldKind::Text, 14, 0},
    {"EXTRA1", FieldKind::Text, 50, 0},
};
// PBWETL: 17 places
constexpr ColumnDef kPBWETLPlaces[] = {
    {"SEQ", FieldKind::Counter, 0, 0},
    {"WCASE", FieldKind::Text, 20, 0},
    {"STATUS", FieldKind::Text, 1, 0},
    {"WPERMIT", FieldKind::Text, 30, 0},
    {"WDATE", FieldKind::Date, 8, 0},
    {"WRDATE", FieldKind::Text, 12, 0},
    {"WORIGINATOR", FieldKind::Text, 40, 0},
    {"WTO", FieldKind::Text, 30, 0},
    {"WADDR", FieldKind::Text, 80, 0},
    {"WCOMPLETED", FieldKind::Text, 1, 0},
    {"WNOTES", FieldKind::LongText, 0, 0},
    {"BYUSER", FieldKind::Text, 20, 0},
    {"TSTAMP", FieldKind::DateTime, 8, 0},
    {"WACTION", FieldKind::Text, 50, 0},
    {"WEXPL", FieldKind::LongText, 0, 0},
    {"WPHONE", FieldKind::Text, 14, 0},
    {"EXTRA1", FieldKind::Text, 50, 0},
};
// ADJ: 14 places
constexpr ColumnDef kADJPlaces[] = {
    {"SEQ", FieldKind::Counter, 0, 0},
    {"ACASE", FieldKind::Text, 20, 0},
    {"STATUS", FieldKind::Text, 1, 0},
    {"ASBLF", FieldKind::Text, 40, 0},
    {"ASBLS", FieldKind::Text, 30, 0},
    {"AASSOC", FieldKind::Text, 30, 0},
    {"ALOCN1", FieldKind::Text, 80, 0},
    {"AMAILING", FieldKind::Text, 80, 0},
    {"AGISLINKR", FieldKind::Text, 24, 0},
    {"ANOTES", FieldKind::LongText, 0, 0},
    {"EXTRA1", FieldKind::Text, 30, 0},
    {"BYUSER", FieldKind::Text, 20, 0},
    {"TSTAMP", FieldKind::DateTime, 8, 0},
    {"WPHONE", FieldKind::Text, 14, 0},
};
// CHECKLIST: 5 columns
constexpr ColumnDef kCHECKLISTColumns[] = {
    {"SEQ", FieldKind::Counter, 0, 0},
    {"CASE", FieldKind::Text, 0, 0},
    {"ITEM", FieldKind::LongText, 0, 0},
    {"STATUS", FieldKind::Text, 0, 0},
    {"NOTES", FieldKind::LongText, 0, 0},
};
// SBL: 18 columns
constexpr ColumnDef kSBLColumns[] = {
    {"SBLF", FieldKind::Text, 40, 0},
    {"ASSOC", FieldKind::Text, 30, 0},
    {"LOCN1", FieldKind::Text, 80, 0},
    {"OTHER", FieldKind::Number, 0, 0},
    {"FAILED", FieldKind::Number, 0, 0},
    {"VIOL", FieldKind::Number, 0, 0},
    {"PERMIT", FieldKind::Text, 20, 0},
    {"CITY", FieldKind::Text, 0, 0},
    {"STATE", FieldKind::Text, 0, 0},
    {"ZIP", FieldKind::Text, 0, 0},
    {"HISTORICAL", FieldKind::LongText, 0, 0},
    {"NOTES", FieldKind::LongText, 0, 0},
    {"FLAG", FieldKind::Text, 0, 0},
    {"CONTACT", FieldKind::Text, 30, 0},
    {"MAILING", FieldKind::Text, 80, 0},
    {"GISLINK", FieldKind::Text, 0, 0},
    {"EASTCOORD", FieldKind::Number, 0, 0},
    {"NORTHCOORD", FieldKind::Number, 0, 0},
};
// RPS: 13 columns
constexpr ColumnDef kRPSColumns[] = {
    {"RSBLF", FieldKind::Text, 40, 0},
    {"RSSBL", FieldKind::Text, 20, 0},
    {"RASSOC", FieldKind::Text, 30, 0},
    {"RCONTACT", FieldKind::Text, 30, 0},
    {"RLOCN1", FieldKind::Text, 80, 0},
    {"RADDR1", FieldKind::Text, 80, 0},
    {"RCOORD1", FieldKind::Text, 20, 0},
    {"RCOORD2", FieldKind::Text, 20, 0},
    {"RMAP", FieldKind::Text, 20, 0},
    {"RPRICE", FieldKind::Text, 20, 0},
    {"RNOTES", FieldKind::LongText, 0, 0},
    {"FLAG", FieldKind::Text, 0, 0},
    {"TSTAMP", FieldKind::DateTime, 0, 0},
};

// The case table has one column outside the map: the report by purpose selects on it.
constexpr ColumnDef kPBPROJExtra[] = {
    {"PRMFOR", FieldKind::Text, 30, 0},
};

// The sibling inspection program's own files. This program only checks that
// they are there and seeds them when they are not.
constexpr ColumnDef kSiblingColumns[] = {
    {"SEQ", FieldKind::Counter, 0, 0},
    {"NOTES", FieldKind::LongText, 0, 0},
    {"BYUSER", FieldKind::Text, 20, 0},
    {"TSTAMP", FieldKind::DateTime, 0, 0},
};

constexpr const char* kIndexPBPROJ[] = {"SEC"};
constexpr const char* kIndexPBFEES[] = {"PBFCASE"};
constexpr const char* kIndexBONDS[] = {"BCASE"};
constexpr const char* kIndexMEETING[] = {"MJUL", "MYEAR", "MRECNO"};
constexpr const char* kIndexACTIONS[] = {"APRECNO"};
constexpr const char* kIndexISSUES[] = {"ISRECNO"};
constexpr const char* kIndexPBSEQRA[] = {"SCASE"};
constexpr const char* kIndexPBAGENCY[] = {"ACASE"};
constexpr const char* kIndexPBMAPS[] = {"MPCASE"};
constexpr const char* kIndexPBWETL[] = {"WCASE"};
constexpr const char* kIndexADJ[] = {"ACASE", "ASBLF"};
constexpr const char* kIndexCHECKLIST[] = {"CASE"};

constexpr std::span<const ColumnDef> kNone{};
constexpr std::span<const char* const> kNoIndex{};

// The older parcel table: the first 13 columns of the newer one.
constexpr std::span<const ColumnDef> kSBL13Columns{kSBLColumns, 13};

const std::array<TableDef, 19> kTables = {{
    {Table::PBPROJ, "PBPROJ", "pbproj.db", false, true, kPBPROJPlaces, kPBPROJExtra, kIndexPBPROJ, "PBCASE"},
    {Table::PBFEES, "PBFEES", "pbfees.db", false, true, kPBFEESPlaces, kNone, kIndexPBFEES, nullptr},
    {Table::BONDS, "BONDS", "bonds.db", false, true, kBONDSPlaces, kNone, kIndexBONDS, nullptr},
    {Table::MEETING, "MEETING", "meeting.db", true, true, kMEETINGPlaces, kNone, kIndexMEETING, nullptr},
    {Table::ACTIONS, "ACTIONS", "actions.db", false, true, kACTIONSPlaces, kNone, kIndexACTIONS, nullptr},
    {Table::ISSUES, "ISSUES", "issues.db", false, true, kISSUESPlaces, kNone, kIndexISSUES, nullptr},
    {Table::PBSEQRA, "PBSEQRA", "pbseqra.db", true, true, kPBSEQRAPlaces, kNone, kIndexPBSEQRA, nullptr},
    {Table::PBAGENCY, "PBAGENCY", "pbagency.db", true, true, kPBAGENCYPlaces, kNone, kIndexPBAGENCY, nullptr},
    {Table::PBMAPS, "PBMAPS", "pbmaps.db", false, true, kPBMAPSPlaces, kNone, kIndexPBMAPS, nullptr},
    {Table::PBWETL, "PBWETL", "pbwetl.db", false, true, kPBWETLPlaces, kNone, kIndexPBWETL, nullptr},
    {Table::ADJ, "ADJ", "pbadj.db", false, true, kADJPlaces, kNone, kIndexADJ, nullptr},
    {Table::CHECKLIST, "CHECKLIST", "checklist.db", false, false, kNone, kCHECKLISTColumns, kIndexCHECKLIST, nullptr},
    // One row a parcel: two workstations importing at once end in an update.
    {Table::SBL, "SBL", "sbl.db", true, false, kNone, kSBL13Columns, kNoIndex, "SBLF"},
    {Table::SBL18, "SBL", "sbl18.db", true, false, kNone, kSBLColumns, kNoIndex, "SBLF"},
    {Table::RPS, "RPS", "rps.db", false, false, kNone, kRPSColumns, kNoIndex, "RSBLF"},
    {Table::PBREVIEW, "PBREVIEW", "pbreview.db", true, false, kNone, kSiblingColumns, kNoIndex, nullptr},
    {Table::DB5, "DB5", "db5.db", true, false, kNone, kSiblingColumns, kNoIndex, nullptr},
    {Table::DB6, "DB6", "db6.db", true, false, kNone, kSiblingColumns, kNoIndex, nullptr},
    {Table::DB7, "DB7", "db7.db", true, false, kNone, kSiblingColumns, kNoIndex, nullptr},
}};

// The declared type of a column. Every declared type keeps SQLite's affinity
// right (TEXT for texts and dates, REAL for numbers) and says to other tools
// what the column holds.
QString declaredType(const ColumnDef& column)
{
    switch (column.kind) {
    case FieldKind::Text:
        return column.longest > 0 ? QStringLiteral("VARCHAR(%1)").arg(column.longest) : QStringLiteral("TEXT");
    case FieldKind::LongText:
        return QStringLiteral("TEXT");
    case FieldKind::Date:
        return QStringLiteral("DATE_TEXT");
    case FieldKind::Time:
        return QStringLiteral("TIME_TEXT");
    case FieldKind::DateTime:
        return QStringLiteral("DATETIME_TEXT");
    case FieldKind::Number:
        return QStringLiteral("REAL");
    case FieldKind::Money:
        return QStringLiteral("REAL_MONEY");
    case FieldKind::Counter:
        return QStringLiteral("INTEGER PRIMARY KEY AUTOINCREMENT");
    }
    return QStringLiteral("TEXT");
}

QString quoted(const char* name)
{
    return QLatin1Char('"') + QString::fromLatin1(name) + QLatin1Char('"');
}

} // namespace

const TableDef& tableDef(Table table)
{
    return kTables.at(static_cast<size_t>(table));
}

std::span<const TableDef> allTables()
{
    return kTables;
}

QList<ColumnDef> physicalColumns(const TableDef& table)
{
    QList<ColumnDef> columns;
    QStringList seen;
    auto add = [&](const ColumnDef& column) {
        const QString name = QString::fromLatin1(column.name);
        if (!seen.contains(name)) {
            seen.append(name);
            columns.append(column);
        }
    };
    for (const ColumnDef& column : table.places) {
        add(column);
    }
    for (const ColumnDef& column : table.extraColumns) {
        add(column);
    }
    return columns;
}

QStringList databaseFileNames()
{
    QStringList names;
    for (const TableDef& table : kTables) {
        if (table.id != Table::SBL18 && table.id != Table::DB5 && table.id != Table::DB6 && table.id != Table::DB7) {
            names.append(QString::fromLatin1(table.fileName));
        }
    }
    return names;
}

QStringList seedFileNames()
{
    QStringList names;
    for (const TableDef& table : kTables) {
        if (table.seeded) {
            names.append(QString::fromLatin1(table.fileName));
        }
    }
    return names;
}

const TableDef* seedTableFor(const QString& fileName)
{
    for (const TableDef& table : kTables) {
        if (table.seeded && fileName.compare(QString::fromLatin1(table.fileName), Qt::CaseInsensitive) == 0) {
            return &table;
        }
    }
    return nullptr;
}

QStringList createStatements(const TableDef& table)
{
    QStringList columns;
    for (const ColumnDef& column : physicalColumns(table)) {
        columns.append(quoted(column.name) + QLatin1Char(' ') + declaredType(column));
    }
    QStringList statements;
    statements.append(QStringLiteral("CREATE TABLE %1 (%2)").arg(quoted(table.tableName), columns.join(QStringLiteral(", "))));
    // Keys compare without regard to case, as the office's engine compared them.
    if (table.uniqueColumn) {
        statements.append(QStringLiteral("CREATE UNIQUE INDEX %1 ON %2 (%3 COLLATE NOCASE)")
                              .arg(quoted((QByteArray(table.tableName) + "_" + table.uniqueColumn + "_key").constData()),
                                   quoted(table.tableName), quoted(table.uniqueColumn)));
    }
    for (const char* column : table.indexedColumns) {
        statements.append(QStringLiteral("CREATE INDEX %1 ON %2 (%3 COLLATE NOCASE)")
                              .arg(quoted((QByteArray(table.tableName) + "_" + column).constData()),
                                   quoted(table.tableName), quoted(column)));
    }
    return statements;
}

StoreStatus createDatabaseFile(const QString& path, const TableDef& table)
{
    if (QFileInfo::exists(path)) {
        return StoreStatus::failure(StoreErrorNumber::WriteFailed, QStringLiteral("%1 already exists.").arg(path));
    }
    // Built under a temporary name beside the target, then renamed, so a
    // half-made file never carries the real name.
    QTemporaryFile temporary(path + QStringLiteral(".XXXXXX"));
    if (!temporary.open()) {
        return StoreStatus::failure(StoreErrorNumber::WriteFailed,
                                    QStringLiteral("Cannot write %1: %2").arg(path, temporary.errorString()));
    }
    temporary.close();

    sqlite3* db = nullptr;
    const QByteArray temporaryName = QFile::encodeName(temporary.fileName());
    int rc = sqlite3_open_v2(temporaryName.constData(), &db, SQLITE_OPEN_READWRITE, nullptr);
    QString failure;
    if (rc == SQLITE_OK) {
        QString script = QStringLiteral("BEGIN;");
        for (const QString& statement : createStatements(table)) {
            script += statement + QLatin1Char(';');
        }
        script += QStringLiteral("COMMIT;");
        char* message = nullptr;
        rc = sqlite3_exec(db, script.toUtf8().constData(), nullptr, nullptr, &message);
        if (rc != SQLITE_OK) {
            failure = QString::fromUtf8(message ? message : sqlite3_errstr(rc));
        }
        sqlite3_free(message);
    } else {
        failure = QString::fromUtf8(sqlite3_errstr(rc));
    }
    sqlite3_close(db);
    if (!failure.isEmpty()) {
        return StoreStatus::failure(StoreErrorNumber::WriteFailed, QStringLiteral("Cannot make %1: %2").arg(path, failure));
    }
    if (!temporary.rename(path)) {
        return StoreStatus::failure(StoreErrorNumber::WriteFailed,
                                    QStringLiteral("Cannot write %1: %2").arg(path, temporary.errorString()));
    }
    temporary.setAutoRemove(false);
    // A temporary file is private; a database file is shared by the office's
    // workstations, as far as the umask allows.
    ::chmod(QFile::encodeName(path).constData(), static_cast<mode_t>(newFileMode()));
    return StoreStatus::success();
}

} // namespace pvardo::store
