// Two windows, and no public call touches a context that is not its view's: whichever is current,
// state and objects of the host stay, and both windows draw afterwards.
#include "zylCore.h"
#include "zylGLObjects.h"
#include "zylHostTest.h"
#include "zylViewScene.h"

#include <string>

#include <vtk_glew.h>

namespace {
// Binds what deleting and making objects may unbind.
void BindObjects(const zylGLObjects& objects)
{
  glBindVertexArray(objects.Name("vertex array", 0));
  glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, objects.Name("buffer", 0));
  glBindBuffer(GL_ARRAY_BUFFER, objects.Name("buffer", 1));
  glBindRenderbuffer(GL_RENDERBUFFER, objects.Name("renderbuffer", 0));
  for (GLuint unit = 0; unit < 8; ++unit)
  {
    glActiveTexture(GL_TEXTURE0 + unit);
    glBindTexture(GL_TEXTURE_2D, objects.Name("texture", unit));
  }
  glActiveTexture(GL_TEXTURE3);
}

enum Situation
{
  Own,
  Other,
  None
};
} // namespace

class zylViewContexts
  : public zylHostTest
  , public ::testing::WithParamInterface<Situation>
{
protected:
  // Whether the picture shows something but the clear color in the middle.
  void ExpectDrawn(zylTestHost& host, zylView* view, const std::string& what, bool drawn = true)
  {
    host.MakeCurrent();
    host.Clear(0.0f, 0.0f, 1.0f);
    view->Render();
    EXPECT_EQ(!host.PixelIs(150, 150, 0, 0, 255), drawn) << what;
    EXPECT_TRUE(host.PixelIs(2, 2, 0, 0, 255)) << what;
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << what;
  }
};

TEST_P(zylViewContexts, AreLeftAlone)
{
  const Situation situation = this->GetParam();
  auto other = zylTestHost::New(zylTestHost::DefaultPlatform(), 300, 300);
  ASSERT_NE(other, nullptr);
  zylViewScene otherScene;
  this->ExpectDrawn(*other, otherScene.View, "first");
  // The other host makes its objects first, and many: nearly every name of ours is one of theirs.
  const zylGLObjects otherObjects(600);
  this->Host->MakeCurrent();
  zylViewScene scene;
  this->ExpectDrawn(*this->Host, scene.View, "first");
  const zylGLObjects objects(30);
  BindObjects(objects);
  other->MakeCurrent();
  BindObjects(otherObjects);

  for (const zylViewCall& call : zylViewCalls())
  {
    this->Host->MakeCurrent();
    const zylGLState before = zylGLState::Read();
    other->MakeCurrent();
    const zylGLState otherBefore = zylGLState::Read();
    zylTestHost* current = situation == Own ? this->Host.get() : other.get();
    current->MakeCurrent();
    if (situation == None)
    {
      current->Release();
    }
    call.Run(scene);
    EXPECT_EQ(this->Host->IsCurrent(), situation == Own) << call.Name;
    EXPECT_EQ(other->IsCurrent(), situation == Other) << call.Name;
    other->MakeCurrent();
    EXPECT_EQ(zylGLState::Read().Difference(otherBefore), "") << call.Name << ", other window";
    EXPECT_EQ(otherObjects.Missing(), "") << call.Name << ", other window";
    this->Host->MakeCurrent();
    EXPECT_EQ(zylGLState::Read().Difference(before), "") << call.Name;
    EXPECT_EQ(objects.Missing(), "") << call.Name;
    if (scene.View)
    {
      this->ExpectDrawn(*other, otherScene.View, call.Name);
      double bounds[6];
      this->ExpectDrawn(*this->Host, scene.View, call.Name, scene.View->GetBounds(bounds));
      EXPECT_EQ(zylGLState::Read().Difference(before), "") << call.Name << ", frame after it";
      EXPECT_EQ(objects.Missing(), "") << call.Name << ", frame after it";
    }
    ASSERT_FALSE(this->HasFailure()) << call.Name;
  }
}

// What is dropped while the context is not current is not lost: it goes at the next frame.
TEST_P(zylViewContexts, HoldNothingThatWasDropped)
{
  const Situation situation = this->GetParam();
  auto other = zylTestHost::New(zylTestHost::DefaultPlatform(), 300, 300);
  ASSERT_NE(other, nullptr);
  this->Host->MakeCurrent();
  zylViewScene scene;
  const auto round = [&] {
    for (int i = 0; i < 6; ++i)
    {
      this->Host->MakeCurrent();
      scene.View->Render();
      if (situation != Own)
      {
        other->MakeCurrent();
      }
      if (situation == None)
      {
        other->Release();
      }
      scene.Color(i % 2 == 0, i % 2 == 0);
      scene.Style(i % 3, i % 2 ? 0.5 : 0.0);
    }
    this->Host->MakeCurrent();
    scene.View->Render();
    return zylGLObjects::Count();
  };
  round();
  const int count = round();
  EXPECT_EQ(round(), count);
}

INSTANTIATE_TEST_SUITE_P(
  Current, zylViewContexts, ::testing::Values(Own, Other, None), [](const auto& info) {
    return std::string(info.param == Own ? "Own" : info.param == Other ? "Other" : "None");
  });

// So it is with all that a view has, when it is dropped while another context is current.
TEST_F(zylHostTest, ViewsTakeTheirObjectsAlong)
{
  auto other = zylTestHost::New(zylTestHost::DefaultPlatform(), 300, 300);
  ASSERT_NE(other, nullptr);
  const zylGLObjects otherObjects(600);
  for (const bool free : { false, true })
  {
    int counts[3];
    for (int& count : counts)
    {
      this->Host->MakeCurrent();
      zylViewScene scene;
      scene.Color(true, true);
      scene.View->Render();
      other->MakeCurrent();
      if (free)
      {
        scene.Boundary->FreeResources();
      }
      scene.View->RemoveRepresentation(scene.Boundary);
      scene.View = nullptr;
      EXPECT_TRUE(other->IsCurrent());
      EXPECT_EQ(otherObjects.Missing(), "");
      this->Host->MakeCurrent();
      count = zylGLObjects::Count();
    }
    EXPECT_EQ(counts[2], counts[0]) << "freed before: " << free;
  }
}

// A view that moves between two contexts leaves nothing behind in either.
TEST_F(zylHostTest, ViewsMayMoveToAndFro)
{
  auto other = zylTestHost::New(zylTestHost::DefaultPlatform(), 300, 300);
  ASSERT_NE(other, nullptr);
  zylTestHost* const hosts[2] = { this->Host.get(), other.get() };
  zylViewScene scene;
  int counts[2][6];
  for (int i = 0; i < 12; ++i)
  {
    zylTestHost* host = hosts[i % 2];
    host->MakeCurrent();
    host->Clear(0.0f, 0.0f, 1.0f);
    scene.View->Render();
    EXPECT_TRUE(host->IsCurrent());
    EXPECT_FALSE(host->PixelIs(150, 150, 0, 0, 255)) << "move " << i;
    counts[i % 2][i / 2] = zylGLObjects::Count();
  }
  for (const auto& count : counts)
  {
    EXPECT_EQ(count[5], count[1]);
  }
  // One of them may be gone.
  other = nullptr;
  this->Host->MakeCurrent();
  scene.View->Render();
  EXPECT_FALSE(this->Host->PixelIs(150, 150, 0, 0, 255));
}

// Last: the session of this process ends here, with both windows.
class zylViewContextsEnd : public zylViewContexts
{
};

TEST_P(zylViewContextsEnd, LeaveTheContextsAlone)
{
  auto other = zylTestHost::New(zylTestHost::DefaultPlatform(), 300, 300);
  ASSERT_NE(other, nullptr);
  zylViewScene otherScene;
  otherScene.View->Render();
  const zylGLObjects otherObjects(30);
  this->Host->MakeCurrent();
  zylViewScene scene;
  scene.View->Render();
  const zylGLObjects objects(600);
  BindObjects(objects);
  this->Unchanged("Disconnect", [] { zylCore::GetInstance()->Disconnect(); });
  EXPECT_EQ(objects.Missing(), "");
  other->MakeCurrent();
  EXPECT_EQ(otherObjects.Missing(), "");
  this->Host->MakeCurrent();
}

INSTANTIATE_TEST_SUITE_P(Current, zylViewContextsEnd, ::testing::Values(Own));
