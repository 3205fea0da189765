// Unit conversion, post-linearisation, user thermocouples and the formulas they show.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>

#include "base/numbers.h"
#include "pod_setup_rig.h"
#include "support/recording_failures.h"
#include "ui/pods/field_checks.h"

namespace kavorix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Formula, CoefficientsInFixedAndExponentForm) {
    const std::vector<std::pair<double, const char*>> rows = {{0.5, "0.5"},
                                                              {2, "2"},
                                                              {999.9, "999.9"},
                                                              {1000, "1.0E3"},
                                                              {1500, "1.5E3"},
                                                              {0.01, "0.01"},
                                                              {0.0099, "9.9E-3"},
                                                              {-1234.5678, "-1.235E3"},
                                                              {9999.6, "1.0E4"},
                                                              {-0.5, "-0.5"},
                                                              {123.45678, "123.4568"},
                                                              {1E-10, "1.0E-10"},
                                                              {3.4E38, "3.4E38"},
                                                              {-2.7182, "-2.7182"},
                                                              {999.99999, "1000"},
                                                              {0, "0.0E0"}};
    for (const auto& [value, text] : rows) EXPECT_EQ(coefficient_text(value), text) << value;
}

TEST(Formula, HighestPowerFirstAndNoZeroTerms) {
    EXPECT_EQ(formula({0.5, 2, 0, 1500, 0, 0}), "1.5E3x^3+2x^1+0.5");
    EXPECT_EQ(formula({}), "");
    EXPECT_EQ(formula({0, 0, 0, 0, 0, -1}), "-1x^5");
    EXPECT_EQ(formula({1, -1, 0, 0, 0, 0}), "-1x^1+1");
}

TEST(Formula, ValueOfAPolynomial) {
    EXPECT_DOUBLE_EQ(value_at({1, 2, 3, 4, 5, 6}, 2), 1 + 4 + 12 + 32 + 80 + 192);
    EXPECT_DOUBLE_EQ(value_at({7, 0, 0, 0, 0, 0}, -100), 7);
}

TEST(NumberTexts, ShowASingleSoThatItIsReadBackExactly) {
    EXPECT_EQ(exact_text(0.1F), "0.1");
    EXPECT_EQ(exact_text(1.0F), "1");
    std::uint32_t bits = 1;
    for (int i = 0; i < 100000; ++i) {
        bits = bits * 1664525u + 1013904223u;
        const auto value = std::bit_cast<float>(bits);
        if (!std::isfinite(value)) continue;
        ASSERT_EQ(single_of(exact_text(value)), value) << exact_text(value);
    }
}

TEST(NumberTexts, SixDecimals) {
    EXPECT_EQ(six_decimals(0), "00.000000");
    EXPECT_EQ(six_decimals(2.1F), "02.100000");
    EXPECT_EQ(six_decimals(-2.5F), "-02.500000");
    EXPECT_EQ(six_decimals(12.25F), "12.250000");
    EXPECT_EQ(six_decimals(1234.5F), "1234.500000");
}

class ScalingTest : public testing::Test {
  protected:
    PodConfig pod;
    ScriptedDialogs dialogs;
    RecordingFailures failures;

    void SetUp() override { default_ZAV_config(pod, Type7V, 1); }
    UnitConversion conversion(int number = 3) { return {pod, number - 1, dialogs, failures}; }
    ChannelConfig& channel() { return pod.Channel[2]; }

    static std::string selected(const UnitConversion& dialog) {
        std::string text;
        for (const OptionButton& option : dialog.screen.PostLinOp)
            text += option.selected ? '*' : option.enabled ? 'o' : '-';
        return text;
    }
};

TEST_F(ScalingTest, ConversionOpensWithTheStoredValues) {
    channel().MValue = 2.5F;
    channel().CValue = -0.25F;
    channel().PostLin = 2;
    const UnitConversion dialog = conversion();
    EXPECT_EQ(dialog.screen.txtMValue.text, "2.5");
    EXPECT_EQ(dialog.screen.txtCValue.text, "-0.25");
    EXPECT_EQ(dialog.screen.lblMx_cValue.caption, "2.5x+-0.25");
    EXPECT_EQ(selected(dialog), "oo*");
}

TEST_F(ScalingTest, EquationsAreOfferedOnAnalogChannelsOfUniversalPods) {
    EXPECT_EQ(selected(conversion(18)), "*oo");
    const UnitConversion digital = conversion(19);
    EXPECT_FALSE(digital.screen.PostLinOp[0].enabled || digital.screen.PostLinOp[1].enabled);
    default_ZAV_config(pod, Type7R, 1);
    UnitConversion other = conversion();
    EXPECT_EQ(selected(other), "---");
    other.screen.txtMValue.text = "3";
    other.cmdOK_Click();
    EXPECT_EQ(channel().MValue, 3.0F);
    EXPECT_EQ(channel().PostLin, 0);
}

TEST_F(ScalingTest, OnlyADefinedEquationCanBeChosen) {
    UnitConversion dialog = conversion();
    dialog.PostLinOp_Click(2);
    EXPECT_EQ(selected(dialog), "*oo");
    pod.PostLinEquation[1].Enabled = 1;
    dialog.PostLinOp_Click(2);
    EXPECT_EQ(selected(dialog), "*oo") << "1 is not on";
    pod.PostLinEquation[1].Enabled = TableOn;
    dialog.PostLinOp_Click(2);
    EXPECT_EQ(selected(dialog), "oo*");
    dialog.cmdOK_Click();
    EXPECT_EQ(channel().PostLin, 2);
    EXPECT_TRUE(dialog.changed());
}

TEST_F(ScalingTest, LeavingAFieldChecksItAndShowsTheFormula) {
    UnitConversion dialog = conversion();
    dialog.screen.txtMValue.text = "abc";
    EXPECT_FALSE(dialog.txtMValue_LostFocus("txtCValue"));
    EXPECT_TRUE(dialog.txtMValue_LostFocus("cmdCancel"));
    dialog.screen.txtMValue.text = " 2 ";
    EXPECT_TRUE(dialog.txtMValue_LostFocus("txtCValue"));
    EXPECT_EQ(dialog.screen.lblMx_cValue.caption, "2x + 0");
    dialog.screen.txtCValue.text = "5V";
    EXPECT_FALSE(dialog.txtCValue_LostFocus("cmdOK"));
    dialog.screen.txtCValue.text = " ";
    EXPECT_TRUE(dialog.txtCValue_LostFocus("cmdOK"));
    EXPECT_EQ(dialog.screen.lblMx_cValue.caption, "");
    EXPECT_THAT(dialogs.boxes, ElementsAre(refusal("Value Entered for 'M' must be a Number"),
                                           refusal("Value Entered for 'C' must be a Number")));
    EXPECT_EQ(dialogs.beeps, 2);
}

TEST_F(ScalingTest, BothValuesOrNone) {
    struct Row {
        const char* m;
        const char* c;
        const char* message;
    };
    for (const Row& row : {Row{"2", " ", "'C' Value Required if 'M' has been Specified"},
                           Row{"", "0.5", "'M' Value Required if 'C' has been Specified"}}) {
        UnitConversion dialog = conversion();
        dialog.screen.txtMValue.text = row.m;
        dialog.screen.txtCValue.text = row.c;
        dialog.cmdOK_Click();
        EXPECT_THAT(dialogs.take_boxes(), ElementsAre(refusal(row.message)));
        EXPECT_EQ(dialog.screen.focus, "txtMValue");
        EXPECT_FALSE(dialog.closed());
    }
    channel().MValue = 4;
    channel().CValue = 5;
    UnitConversion dialog = conversion();
    dialog.screen.txtMValue.text = "";
    dialog.screen.txtCValue.text = "  ";
    dialog.cmdOK_Click();
    EXPECT_TRUE(dialog.closed() && dialog.changed());
    EXPECT_EQ(channel().MValue, 1.0F);
    EXPECT_EQ(channel().CValue, 0.0F);
}

TEST_F(ScalingTest, SameValuesAreNoChange) {
    channel().MValue = 1.0F / 3;
    channel().CValue = 1.2345678E-9F;
    UnitConversion dialog = conversion();
    dialog.cmdOK_Click();
    EXPECT_TRUE(dialog.closed());
    EXPECT_FALSE(dialog.changed());
}

TEST_F(ScalingTest, PostLinearisationStoresEachEquationOnItsOwn) {
    PostLinearisation dialog(pod, dialogs, failures);
    EXPECT_EQ(dialog.screen.caption, "Post Linearisation Equations");
    EXPECT_EQ(dialog.screen.lblHeading.caption, "Enter coefficients for 5th order polynomials");
    EXPECT_EQ(dialog.screen.txtCoeff[5].text, "0");
    EXPECT_EQ(dialog.screen.lblapoly.caption, "");
    dialog.screen.txtCoeff[1].text = " 1.5 ";
    EXPECT_TRUE(dialog.txtCoeff_LostFocus(1, "txtCoeff_2"));
    EXPECT_EQ(dialog.screen.lblapoly.caption, "1.5x^1");
    EXPECT_EQ(dialog.screen.lblbpoly.caption, "");
    dialog.cmdOK_Click();
    EXPECT_TRUE(dialog.closed() && dialog.changed());
    EXPECT_EQ(pod.PostLinEquation[0].Enabled, TableOn);
    EXPECT_EQ(pod.PostLinEquation[0].Coeff, (Polynomial6{0, 1.5F, 0, 0, 0, 0}));
    EXPECT_EQ(pod.PostLinEquation[1].Enabled, 0);
}

TEST_F(ScalingTest, ZerosLeaveAnEquationOffAndChangesLeaveItOn) {
    PostLinearisation zeros(pod, dialogs, failures);
    zeros.cmdOK_Click();
    EXPECT_FALSE(zeros.changed());
    pod.PostLinEquation[1] = {TableOn, {1, 2, 3, 4, 5, 6}};
    PostLinearisation back(pod, dialogs, failures);
    for (TextField& field : back.screen.txtbCoeff) field.text = "0";
    back.cmdOK_Click();
    EXPECT_EQ(pod.PostLinEquation[1].Enabled, TableOn) << "once on, it stays on";
    EXPECT_EQ(pod.PostLinEquation[1].Coeff, Polynomial6{});
}

TEST_F(ScalingTest, CoefficientsMustBeNumbers) {
    PostLinearisation dialog(pod, dialogs, failures);
    for (const char* text : {"", "x", "1E39"}) {
        dialog.screen.txtbCoeff[4].text = text;
        EXPECT_FALSE(dialog.txtbCoeff_LostFocus(4, "cmdOK")) << text;
        EXPECT_THAT(dialogs.take_boxes(), ElementsAre(refusal("Coefficient must be a number")));
        EXPECT_TRUE(dialog.txtbCoeff_LostFocus(4, "cmdCancel"));
    }
    dialog.cmdOK_Click();
    EXPECT_FALSE(dialog.closed());
    dialog.cmdCancel_Click();
    EXPECT_EQ(pod.PostLinEquation[1].Enabled, 0);
}

TEST_F(ScalingTest, TheModeChoosesTheUserTable) {
    pod.UserTherm[0].Polynomial = {1, 0, 0, 0, 0, 0};
    pod.UserTherm[1].InversePoly = {0, 0, 0, 0, 0, 2000};
    const UserThermocouple first(pod, 39, dialogs, failures);
    EXPECT_EQ(first.screen.frmUserTherm.caption, "User Thermocouple: 1");
    EXPECT_EQ(first.screen.lblapoly.caption, "1");
    UserThermocouple second(pod, 30, dialogs, failures);
    EXPECT_EQ(second.screen.caption, "User Thermocouple Linearisation");
    EXPECT_EQ(second.screen.frmUserTherm.caption, "User Thermocouple: 2");
    EXPECT_EQ(second.screen.lblbpoly.caption, "2.0E3x^5");
    second.screen.txtCoeff[0].text = "-0.5";
    second.cmdOK_Click();
    EXPECT_TRUE(second.changed());
    EXPECT_EQ(pod.UserTherm[1],
              (UserTherm{TableOn, {-0.5F, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 2000}}));
    EXPECT_EQ(pod.UserTherm[0].Enabled, 0);
}

TEST_F(ScalingTest, AnUnchangedUserTableStaysOff) {
    UserThermocouple dialog(pod, 39, dialogs, failures);
    dialog.cmdOK_Click();
    EXPECT_TRUE(dialog.closed());
    EXPECT_FALSE(dialog.changed());
    EXPECT_EQ(pod.UserTherm[0].Enabled, 0);
}

TEST_F(ScalingTest, TheFormulaFollowsTheKeys) {
    PostLinearisation dialog(pod, dialogs, failures);
    dialog.screen.txtCoeff[2].text = "-";
    dialog.txtCoeff_Change();
    EXPECT_EQ(dialog.screen.lblapoly.caption, "");
    dialog.screen.txtCoeff[2].text = "-3";
    dialog.txtCoeff_Change();
    EXPECT_EQ(dialog.screen.lblapoly.caption, "-3x^2");
    EXPECT_THAT(dialogs.boxes, IsEmpty());
}

class ScalingInDialog : public testing::Test, public PodSetupRig {};

TEST_F(ScalingInDialog, EachButtonEditsItsPartOfThePod) {
    open(Type7V, 1);
    set_channel(4, 30);
    windows.post_linearisation = [](PostLinearisation& d) {
        d.screen.txtCoeff[0].text = "1";
        d.cmdOK_Click();
    };
    windows.unit_conversion = [](UnitConversion& d) {
        d.PostLinOp_Click(1);
        d.cmdOK_Click();
    };
    windows.user_thermocouple = [](UserThermocouple& d) {
        d.screen.txtbCoeff[5].text = "7";
        d.cmdOK_Click();
    };
    dialog.cmdPostLin_Click();
    dialog.cmdMx_c_Click();
    dialog.cmdCoeff_Click();
    EXPECT_EQ(edited().PostLinEquation[0].Enabled, TableOn);
    EXPECT_EQ(channel(4).PostLin, 1);
    EXPECT_EQ(edited().UserTherm[1].InversePoly[5], 7.0F);
    for (int i = 0; i < 3; ++i) dialog.cmdUndo_Click();
    EXPECT_EQ(edited().PostLinEquation[0].Enabled, 0);
}

}  // namespace
}  // namespace kavorix::test
