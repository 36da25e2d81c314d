// What a host can show: messages kept, why something failed, progress, and the request to stop.
#include "zylMessages.h"
#include "zylProgress.h"
#include "zylTest.h"
#include "zylTestServer.h"
#include "zylTimeController.h"

#include <ParaView/zylProxyBuilder.h>

#include <ctime>
#include <thread>

#include <vtkCommand.h>
#include <vtkLogger.h>
#include <vtkOutputWindow.h>

namespace {
using Severity = zylMessages::Severity;

// Remembers what the observers are told, and does something besides.
class Observer
{
public:
  Observer(vtkObject* observed, unsigned long event, std::function<void(void*)> action)
    : Observed(observed)
    , Action(std::move(action))
    , Tag(observed->AddObserver(event, this, &Observer::Run))
  {
  }
  ~Observer() { this->Observed->RemoveObserver(this->Tag); }
  Observer(const Observer&) = delete;
  void operator=(const Observer&) = delete;

private:
  void Run(vtkObject*, unsigned long, void* data) { this->Action(data); }

  vtkObject* Observed;
  std::function<void(void*)> Action;
  unsigned long Tag;
};

class zylMessagesKept : public testing::Test
{
protected:
  std::vector<std::string> GetTexts() const
  {
    std::vector<std::string> texts;
    for (const auto& message : this->Messages->GetMessages(this->Mark))
    {
      texts.push_back(message.Text);
    }
    return texts;
  }

  zylMessages* Messages = zylMessages::GetInstance();
  std::size_t Mark = Messages->GetCount();
};

class zylProgressSession : public testing::TestWithParam<bool>
{
protected:
  void SetUp() override
  {
    if (!GetParam())
    {
      zylCore::GetInstance()->Connect("builtin:", 0);
      return;
    }
    if (!zylTestServer::IsAvailable(1))
    {
      GTEST_SKIP() << "no server here";
    }
    this->Server = std::make_unique<zylTestServer>(1, ZYL_PLUGIN_DIRECTORY);
    zylCore::GetInstance()->Connect(this->Server->GetUrl().c_str(), 60);
    ASSERT_NE(zylCore::GetInstance()->GetSession(), nullptr);
  }
  void TearDown() override { zylCore::GetInstance()->Disconnect(); }

  zylProgress* Progress = zylProgress::GetInstance();
  std::unique_ptr<zylTestServer> Server;
};

using Texts = std::vector<std::string>;
} // namespace

//--------------------------------------------------------------------------------------------------
TEST_F(zylMessagesKept, WhoSaysWhatAndWhen)
{
  std::vector<std::size_t> announced;
  const Observer observer(this->Messages, zylMessages::MessageEvent, [&](void* data) {
    announced.push_back(static_cast<const zylMessages::Message*>(data)->Number);
  });
  vtkLogger::SetStderrVerbosity(vtkLogger::VERBOSITY_OFF);
  testing::internal::CaptureStderr();
  const double before = static_cast<double>(std::time(nullptr));
  vtkErrorWithObjectMacro(this->Messages, << "first\nand second line ");
  vtkWarningWithObjectMacro(this->Messages, "a (b): c");
  vtkLogF(ERROR, "logged %d", 3);
  vtkLogF(INFO, "not kept");
  vtkGenericWarningMacro("generic");
  // As Python's error stream comes: in pieces.
  for (const char* piece : { "  File 1", ", line 2\nName", "Error", ": x", "\n", "\n" })
  {
    vtkOutputWindowDisplayErrorText(piece);
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  const struct
  {
    Severity Level;
    const char *Source, *Text;
  } expected[] = {
    { Severity::Error, "zylMessages", "first\nand second line" },
    { Severity::Warning, "zylMessages", "a (b): c" },
    { Severity::Error, "zylMessagesTest", "logged 3" },
    { Severity::Warning, "zylMessagesTest", "generic" },
    { Severity::Error, "", "File 1, line 2" },
    { Severity::Error, "", "NameError: x" },
  };
  const auto messages = this->Messages->GetMessages(this->Mark);
  ASSERT_EQ(messages.size(), std::size(expected));
  for (std::size_t i = 0; i < messages.size(); ++i)
  {
    EXPECT_EQ(messages[i].Number, this->Mark + i + 1);
    EXPECT_EQ(messages[i].Level, expected[i].Level);
    EXPECT_EQ(messages[i].Source, expected[i].Source);
    EXPECT_EQ(messages[i].Text, expected[i].Text);
    EXPECT_GE(messages[i].Time, before - 1.0);
    EXPECT_LE(messages[i].Time, before + 60.0);
    EXPECT_EQ(announced[i], messages[i].Number);
  }
  EXPECT_EQ(this->Messages->GetReason(this->Mark), "NameError: x");
  EXPECT_EQ(this->Messages->GetReason(this->Messages->GetCount()), "");
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylMessagesKept, KeepsTheLastOnes)
{
  const std::size_t capacity = this->Messages->GetCapacity();
  EXPECT_EQ(capacity, 1000u);
  this->Messages->SetCapacity(3);
  for (int i = 0; i < 5; ++i)
  {
    vtkLogF(WARNING, "%d", i);
  }
  EXPECT_EQ(this->GetTexts(), (Texts{ "2", "3", "4" }));
  EXPECT_EQ(this->Messages->GetCount(), this->Mark + 5);
  EXPECT_EQ(this->Messages->GetMessages(this->Mark + 4).size(), 1u);
  EXPECT_TRUE(this->Messages->GetMessages(this->Mark + 5000).empty());
  EXPECT_EQ(this->Messages->GetReason(this->Mark), "4"); // warnings, where no error came
  this->Messages->SetCapacity(capacity);
}

//--------------------------------------------------------------------------------------------------
// An observer is called by the host's thread only, and not while it runs.
TEST_F(zylMessagesKept, AnnouncesOnTheHostsThread)
{
  const auto thread = std::this_thread::get_id();
  Texts announced;
  const Observer observer(this->Messages, zylMessages::MessageEvent, [&](void* data) {
    EXPECT_EQ(std::this_thread::get_id(), thread);
    announced.push_back(static_cast<const zylMessages::Message*>(data)->Text);
    vtkLogF(WARNING, "about %s", announced.back().c_str());
  });
  std::thread([] { vtkLogF(ERROR, "aside"); }).join();
  EXPECT_EQ(this->GetTexts(), Texts{ "aside" });
  EXPECT_TRUE(announced.empty());
  vtkLogF(ERROR, "here");
  EXPECT_EQ(announced, (Texts{ "aside", "here" }));
  EXPECT_EQ(this->GetTexts(), (Texts{ "aside", "here", "about aside", "about here" }));
}

//--------------------------------------------------------------------------------------------------
TEST_F(zylMessagesKept, TellsWhyAnOperationFailed)
{
  zylCore::GetInstance()->Connect("builtin:", 0);
  vtkNew<zylDataSet> data;
  const auto reasonOf = [this](const std::function<bool()>& operation) {
    const std::size_t mark = this->Messages->GetCount();
    EXPECT_FALSE(operation());
    return this->Messages->GetReason(mark);
  };
  const std::string file = zylTestData::MakeFolder() + "/missing.vtu";
  EXPECT_THAT(reasonOf([&] { return data->LoadFromFile({ file }); }), testing::HasSubstr(file));
  EXPECT_EQ(
    reasonOf([&] { return data->LoadFromFile({}); }), "NewDataSet called with no file names");
  zylCore::GetInstance()->Disconnect();
  EXPECT_NE(reasonOf([&] { return data->LoadFromFile({ file }); }), "");
}

//--------------------------------------------------------------------------------------------------
// A server tells once a second how far it is.
TEST_P(zylProgressSession, IsReported)
{
  const auto source = zylProxyBuilder(
    zylCore::GetInstance()->GetSessionProxyManager(), "sources", "ProgrammableSource")
                        .Set("Script",
                          "import time\nfor i in range(2):\n  time.sleep(1.1)\n"
                          "  self.UpdateProgress(0.25 + 0.5 * i)\n")
                        .MakeUnregistered();
  ASSERT_NE(source, nullptr);
  std::vector<double> fractions;
  const Observer observer(this->Progress, vtkCommand::ProgressEvent, [&](void* data) {
    EXPECT_EQ(*static_cast<double*>(data), this->Progress->GetFraction());
    EXPECT_NE(this->Progress->GetText(), "");
    fractions.push_back(this->Progress->GetFraction());
  });
  source->UpdatePipeline();
  EXPECT_THAT(fractions, testing::IsSupersetOf({ 0.25, 0.75 }));
}

//--------------------------------------------------------------------------------------------------
TEST_P(zylProgressSession, IsCanceledBetweenStages)
{
  const double steps[] = { 1.0, 3.0 };
  const std::string file = zylTestData::WriteSeries(zylTestData::MakeFolder(), steps, 2);
  const std::string other =
    zylTestData::Write(zylTestData::MakeRow(4), zylTestData::MakeFolder() + "/row.vtm");
  vtkNew<zylDataSet> data;
  this->Progress->RequestCancel(); // of nothing
  EXPECT_FALSE(this->Progress->IsCancelRequested());
  ASSERT_TRUE(data->LoadFromFile({ file }));
  const vtkIdType cells = data->GetNumberOfCells();

  const std::size_t mark = zylMessages::GetInstance()->GetCount();
  {
    const zylProgress::Operation operation;
    this->Progress->RequestCancel();
    EXPECT_FALSE(data->LoadFromFile({ other }));
    EXPECT_FALSE(this->Progress->IsCancelRequested());
  }
  EXPECT_EQ(data->GetReadErrors(), Texts{ "canceled" });
  EXPECT_EQ(zylMessages::GetInstance()->GetReason(mark), "Failed to read " + other + ": canceled");
  EXPECT_EQ(data->GetNumberOfCells(), cells);
  EXPECT_EQ(data->GetFileNames(), Texts{ file });

  // A step that is canceled leaves what is known as it was, and comes with the next update.
  const auto pressure = [&] { return zylRange(data->GetPointArrayInformation(0, 0))[0]; };
  zylTimeController::GetInstance()->GoToTime(1.0);
  ASSERT_EQ(data->GetPointArrayInformation(0, 0)->GetName(), "pressure");
  const double before = pressure();
  {
    const zylProgress::Operation operation;
    this->Progress->RequestCancel();
    zylTimeController::GetInstance()->GoToTime(3.0);
    EXPECT_EQ(pressure(), before);
    EXPECT_EQ(data->GetReadErrors(), Texts{ "canceled" });
  }
  data->Update();
  EXPECT_EQ(pressure(), before + 2.0);
  EXPECT_TRUE(data->GetReadErrors().empty());
  EXPECT_TRUE(data->LoadFromFile({ other }));
}

INSTANTIATE_TEST_SUITE_P(Sessions, zylProgressSession, testing::Bool(),
  [](const auto& info) { return info.param ? "Server" : "BuiltIn"; });
