// Fields, and how they are found.

#include "base/Text.h"
#include "host/conformance/Conformance.h"

namespace halvane::test::conformance {

namespace {

using namespace host;

class Fields : public HostTest {
protected:
    /// The same for the roads and for the signs.
    void ofEachTable(const std::function<void(const GisFields&, const TownTable&)>& test) {
        inTown([&](const OpenTown& open) {
            test(*open.roads()->fields(), town().roads);
            test(*open.signs()->fields(), town().signs);
        });
    }
};

std::string upperCase(std::string sText) {
    for (char& c : sText)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return sText;
}

std::string lowerCase(std::string sText) {
    for (char& c : sText)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return sText;
}

const std::string& aliasOf(const TownField& field) {
    return field.sAlias.empty() ? field.sName : field.sAlias;
}

} // namespace

TEST_F(Fields, StandInTheOrderOfTheirTable) {
    ofEachTable([](const GisFields& fields, const TownTable& told) {
        ASSERT_EQ(fields.count(), static_cast<std::int32_t>(told.aFields.size()));
        for (std::size_t n = 0; n < told.aFields.size(); ++n)
            EXPECT_EQ(fields.field(static_cast<std::int32_t>(n)).name(), told.aFields[n].sName);
    });
}

TEST_F(Fields, KeepTheLetterCaseOfTheirNamesAndAreFoundInAny) {
    ofEachTable([](const GisFields& fields, const TownTable& told) {
        for (std::size_t n = 0; n < told.aFields.size(); ++n) {
            const std::string& sName = told.aFields[n].sName;
            for (const std::string& sSought : {sName, upperCase(sName), lowerCase(sName)})
                EXPECT_EQ(fields.findField(sSought), static_cast<std::int32_t>(n)) << sSought;
        }
        EXPECT_EQ(fields.findField("NOFIELD"), -1);
        EXPECT_EQ(fields.findField(""), -1);
    });
}

TEST_F(Fields, HaveTheirNameForAnAliasWhereTheyHaveNoOther) {
    ofEachTable([](const GisFields& fields, const TownTable& told) {
        for (std::size_t n = 0; n < told.aFields.size(); ++n)
            EXPECT_EQ(fields.field(static_cast<std::int32_t>(n)).aliasName(), aliasOf(told.aFields[n]));
    });
}

TEST_F(Fields, AreFoundByTheirAliasInAnyLetterCase) {
    ofEachTable([](const GisFields& fields, const TownTable& told) {
        for (std::size_t n = 0; n < told.aFields.size(); ++n) {
            const std::string& sAlias = aliasOf(told.aFields[n]);
            EXPECT_EQ(fields.findFieldByAliasName(upperCase(sAlias)), static_cast<std::int32_t>(n)) << sAlias;
        }
        EXPECT_EQ(fields.findFieldByAliasName("Nothing of the kind"), -1);
    });
}

TEST_F(Fields, AreNotFoundByAnAliasWhereTheirNameIsSought) {
    ofEachTable([](const GisFields& fields, const TownTable& told) {
        for (const TownField& field : told.aFields)
            if (!field.sAlias.empty() && told.indexOf(upperCase(field.sAlias)) == -1) {
                EXPECT_EQ(fields.findField(field.sAlias), -1) << field.sAlias;
            }
    });
}

TEST_F(Fields, TellTheirTypeAndTheLengthOfTheirTexts) {
    ofEachTable([](const GisFields& fields, const TownTable& told) {
        for (std::size_t n = 0; n < told.aFields.size(); ++n) {
            const GisField& field = fields.field(static_cast<std::int32_t>(n));
            EXPECT_EQ(field.typeCode(), static_cast<std::int32_t>(told.aFields[n].type)) << field.name();
            if (told.aFields[n].type == FieldType::String) {
                EXPECT_EQ(field.length(), told.aFields[n].lLength) << field.name();
            }
            EXPECT_GE(field.length(), 0) << field.name();
            EXPECT_GE(field.precision(), 0) << field.name();
        }
    });
}

TEST_F(Fields, OfIdentifiersAndShapesAreNotEdited) {
    ofEachTable([](const GisFields& fields, const TownTable& told) {
        for (std::size_t n = 0; n < told.aFields.size(); ++n) {
            const GisField& field = fields.field(static_cast<std::int32_t>(n));
            const bool bKept =
                told.aFields[n].type == FieldType::Oid || told.aFields[n].type == FieldType::Geometry;
            EXPECT_EQ(field.isEditable(), !bKept) << field.name();
            if (!bKept) {
                EXPECT_TRUE(field.isNullable()) << field.name();
            }
        }
    });
}

TEST_F(Fields, EndWhereTheirTableEnds) {
    ofEachTable([](const GisFields& fields, const TownTable& /*told*/) {
        EXPECT_TRUE(isOutOfRange([&] { return fields.field(fields.count()).name(); }));
        EXPECT_TRUE(isOutOfRange([&] { return fields.field(-1).name(); }));
    });
}

TEST_F(Fields, OfTwoTablesAreToldApartByTheirSerialNumber) {
    inTown([](const OpenTown& open) {
        EXPECT_NE(open.roads()->fields()->serialNumber(), open.signs()->fields()->serialNumber());
    });
}

} // namespace halvane::test::conformance
