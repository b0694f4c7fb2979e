#include "host/gdal/facts/StatePlaneZones.h"

#include <algorithm>
#include <array>
#include <string>

namespace halvane::host::gdal {

namespace {

struct Zone {
    std::string_view sName;
    int lNumber;
};

// All that the EPSG register has, in the order of their names. The numbers follow from its codes: a
// conversion of 1927 has the zone's number and 10000 as its code, one of 1983 in metres the number and 10030;
// the few that were registered out of turn have the number of the zone that they correct.
constexpr std::array<Zone, 140> aZones{{{"Alabama East", 101},
                                        {"Alabama West", 102},
                                        {"Alaska 1", 5001},
                                        {"Alaska 10", 5010},
                                        {"Alaska 2", 5002},
                                        {"Alaska 3", 5003},
                                        {"Alaska 4", 5004},
                                        {"Alaska 5", 5005},
                                        {"Alaska 6", 5006},
                                        {"Alaska 7", 5007},
                                        {"Alaska 8", 5008},
                                        {"Alaska 9", 5009},
                                        {"Arizona Central", 202},
                                        {"Arizona East", 201},
                                        {"Arizona West", 203},
                                        {"Arkansas North", 301},
                                        {"Arkansas South", 302},
                                        {"California 1", 401},
                                        {"California 2", 402},
                                        {"California 3", 403},
                                        {"California 4", 404},
                                        {"California 5", 405},
                                        {"California 6", 406},
                                        {"California I", 401},
                                        {"California II", 402},
                                        {"California III", 403},
                                        {"California IV", 404},
                                        {"California V", 405},
                                        {"California VI", 406},
                                        {"California VII", 407},
                                        {"Colorado Central", 502},
                                        {"Colorado North", 501},
                                        {"Colorado South", 503},
                                        {"Connecticut", 600},
                                        {"Delaware", 700},
                                        {"Florida East", 901},
                                        {"Florida North", 903},
                                        {"Florida West", 902},
                                        {"Georgia East", 1001},
                                        {"Georgia West", 1002},
                                        {"Hawaii 1", 5101},
                                        {"Hawaii 2", 5102},
                                        {"Hawaii 3", 5103},
                                        {"Hawaii 4", 5104},
                                        {"Hawaii 5", 5105},
                                        {"Idaho Central", 1102},
                                        {"Idaho East", 1101},
                                        {"Idaho West", 1103},
                                        {"Illinois East", 1201},
                                        {"Illinois West", 1202},
                                        {"Indiana East", 1301},
                                        {"Indiana West", 1302},
                                        {"Iowa North", 1401},
                                        {"Iowa South", 1402},
                                        {"Kansas North", 1501},
                                        {"Kansas South", 1502},
                                        {"Kentucky North", 1601},
                                        {"Kentucky Single", 1600},
                                        {"Kentucky South", 1602},
                                        {"Louisiana North", 1701},
                                        {"Louisiana Offshore", 1703},
                                        {"Louisiana South", 1702},
                                        {"Maine East", 1801},
                                        {"Maine West", 1802},
                                        {"Maryland", 1900},
                                        {"Massachusetts Island", 2002},
                                        {"Massachusetts Mainland", 2001},
                                        {"Michigan Central", 2112},
                                        {"Michigan North", 2111},
                                        {"Michigan South", 2113},
                                        {"Minnesota Central", 2202},
                                        {"Minnesota North", 2201},
                                        {"Minnesota South", 2203},
                                        {"Mississippi East", 2301},
                                        {"Mississippi West", 2302},
                                        {"Missouri Central", 2402},
                                        {"Missouri East", 2401},
                                        {"Missouri West", 2403},
                                        {"Montana", 2500},
                                        {"Montana Central", 2502},
                                        {"Montana North", 2501},
                                        {"Montana South", 2503},
                                        {"Nebraska", 2600},
                                        {"Nebraska North", 2601},
                                        {"Nebraska South", 2602},
                                        {"Nevada Central", 2702},
                                        {"Nevada East", 2701},
                                        {"Nevada West", 2703},
                                        {"New Hampshire", 2800},
                                        {"New Jersey", 2900},
                                        {"New Mexico Central", 3002},
                                        {"New Mexico East", 3001},
                                        {"New Mexico West", 3003},
                                        {"New York Central", 3102},
                                        {"New York East", 3101},
                                        {"New York Long Island", 3104},
                                        {"New York West", 3103},
                                        {"North Carolina", 3200},
                                        {"North Dakota North", 3301},
                                        {"North Dakota South", 3302},
                                        {"Ohio North", 3401},
                                        {"Ohio South", 3402},
                                        {"Oklahoma North", 3501},
                                        {"Oklahoma South", 3502},
                                        {"Oregon North", 3601},
                                        {"Oregon South", 3602},
                                        {"Pennsylvania North", 3701},
                                        {"Pennsylvania South", 3702},
                                        {"Puerto Rico", 5201},
                                        {"Puerto Rico & Virgin Islands", 5200},
                                        {"Rhode Island", 3800},
                                        {"South Carolina", 3900},
                                        {"South Carolina North", 3901},
                                        {"South Carolina South", 3902},
                                        {"South Dakota North", 4001},
                                        {"South Dakota South", 4002},
                                        {"St. Croix", 5202},
                                        {"Tennessee", 4100},
                                        {"Texas Central", 4203},
                                        {"Texas North", 4201},
                                        {"Texas North Central", 4202},
                                        {"Texas South", 4205},
                                        {"Texas South Central", 4204},
                                        {"Utah Central", 4302},
                                        {"Utah North", 4301},
                                        {"Utah South", 4303},
                                        {"Vermont", 4400},
                                        {"Virginia North", 4501},
                                        {"Virginia South", 4502},
                                        {"Washington North", 4601},
                                        {"Washington South", 4602},
                                        {"West Virginia North", 4701},
                                        {"West Virginia South", 4702},
                                        {"Wisconsin Central", 4802},
                                        {"Wisconsin North", 4801},
                                        {"Wisconsin South", 4803},
                                        {"Wyoming East", 4901},
                                        {"Wyoming East Central", 4902},
                                        {"Wyoming West", 4904},
                                        {"Wyoming West Central", 4903}}};

// "Texas Central" of "Texas CS27 Central zone" and of "SPCS83 Texas Central zone (meters)"; empty without a
// mark.
std::string zoneName(std::string_view sConversion) {
    constexpr std::string_view sMark1983 = "SPCS83 ";
    constexpr std::string_view sMark1927 = " CS27";
    std::string sName(sConversion.substr(0, sConversion.find(" (")));
    if (sName.starts_with(sMark1983))
        sName.erase(0, sMark1983.size());
    else if (const std::size_t nMark = sName.find(sMark1927); nMark != std::string::npos)
        sName.erase(nMark, sMark1927.size());
    else
        return {};
    // "Texas Central zone", "Alaska zone 10", "Kentucky Single Zone".
    for (const std::string_view sWord : {" zone", " Zone"})
        if (const std::size_t nWord = sName.find(sWord); nWord != std::string::npos)
            sName.erase(nWord, sWord.size());
    return sName;
}

} // namespace

std::optional<int> statePlaneZone(std::string_view sConversion) {
    const std::string sName = zoneName(sConversion);
    const auto* const pFound =
        std::lower_bound(aZones.begin(), aZones.end(), sName,
                         [](const Zone& zone, const std::string& sWanted) { return zone.sName < sWanted; });
    return pFound != aZones.end() && pFound->sName == sName ? std::optional(pFound->lNumber) : std::nullopt;
}

} // namespace halvane::host::gdal
