#include <cstdint>
#include <iostream>
#include <vector>

#include <malloc.h>

#include <Display/zylBlockGroups.h>
#include <gtest/gtest.h>
#include <vtkNew.h>
#include <vtkSmartPointer.h>
#include <zylContourPipeline.h>
#include <zylFeatureLinePipeline.h>
#include <zylMeshLinePipeline.h>
#include <zylMultiBlockTree.h>
#include <zylPropertyCollection.h>
#include <zylSurfacePipeline.h>
#include <zylVectorGlyphPipeline.h>

namespace {
template <class Pipeline>
vtkSmartPointer<zylPipeline> NewPipeline()
{
  return vtkSmartPointer<Pipeline>::New();
}

// The kinds of display of a boundary representation, and the hashes of their defaults as a program
// of another language computes them.
struct Kind
{
  zylBlockGroups::PipelineFactory NewPipeline;
  std::uint64_t Hash;
};
constexpr Kind Kinds[] = {
  { &NewPipeline<zylSurfacePipeline>, 0xd9573485d8dd02b7 },
  { &NewPipeline<zylContourPipeline>, 0xcc6426991451ca81 },
  { &NewPipeline<zylFeatureLinePipeline>, 0x0d8f28af2e1096d2 },
  { &NewPipeline<zylMeshLinePipeline>, 0x0d8f28af2e1096d2 },
  { &NewPipeline<zylVectorGlyphPipeline>, 0x620371dab4e91fae },
};

constexpr int Leaves = 4000;

//--------------------------------------------------------------------------------------------------
std::size_t BytesInUse()
{
#if __GLIBC_PREREQ(2, 33)
  const auto info = mallinfo2();
#else
  const auto info = mallinfo();
#endif
  return static_cast<std::size_t>(info.uordblks) + static_cast<std::size_t>(info.hblkhd);
}

//--------------------------------------------------------------------------------------------------
vtkSmartPointer<zylMultiBlockTree> MakeTree(int leaves)
{
  auto root = vtkSmartPointer<zylMultiBlockTree>::New();
  root->SetBlockIndex(0);
  for (int i = 1; i <= leaves; ++i)
  {
    vtkNew<zylMultiBlockTree> leaf;
    leaf->SetBlockIndex(static_cast<unsigned int>(i));
    root->AddChild(leaf);
  }
  return root;
}
} // namespace

//--------------------------------------------------------------------------------------------------
TEST(zylBlockSettings, HashesOfTheDefaults)
{
  const auto tree = MakeTree(2);
  for (const Kind& kind : Kinds)
  {
    const auto pipeline = kind.NewPipeline();
    EXPECT_EQ(pipeline->GetProperties()->GetHashValue(), kind.Hash) << pipeline->GetClassName();
    zylBlockGroups groups(kind.NewPipeline);
    groups.SetBlocks(tree);
    EXPECT_EQ(groups.GetSettings(1)->GetHashValue(), kind.Hash) << pipeline->GetClassName();
    groups.GetSettings(1)->Set("Specular", 0.5);
    EXPECT_NE(groups.GetSettings(1)->GetHashValue(), kind.Hash) << pipeline->GetClassName();
    EXPECT_EQ(groups.GetSettings(2)->GetHashValue(), kind.Hash) << pipeline->GetClassName();
    groups.GetSettings(1)->GetProperty("Specular")->Set(0.0);
    EXPECT_EQ(groups.GetSettings(1)->GetHashValue(), kind.Hash) << pipeline->GetClassName();
  }
}

//--------------------------------------------------------------------------------------------------
// A case has thousands of blocks, and each of them five collections of about 34 settings.
TEST(zylBlockSettings, ABlockTakesFewBytes)
{
  const auto tree = MakeTree(Leaves);
  std::vector<zylBlockGroups> groups;
  groups.reserve(5);
  const std::size_t before = BytesInUse();
  const auto bytesPerBlock = [before] { return (BytesInUse() - before) / Leaves; };
  for (const Kind& kind : Kinds)
  {
    groups.emplace_back(kind.NewPipeline).SetBlocks(tree);
    groups.back().FollowSettings();
  }
  std::cout << bytesPerBlock() << " bytes a block\n";
  EXPECT_LT(bytesPerBlock(), 2000u);
  std::vector<zylProperty*> kept;
  const double range[] = { -1.0, 2.0 };
  for (int id = 1; id <= Leaves; ++id)
  {
    zylPropertyCollection* surface = groups[0].GetSettings(id);
    surface->Set("Visibility", true);
    surface->Set("ColorMode", 1);
    surface->Set("ColorVariableName", "pressure");
    surface->Set("ColorMapRange", range, 2);
    groups[4].GetSettings(id)->Set("Specular", 0.001 * id);
    kept.push_back(groups[3].GetSettings(id)->GetProperty("Color"));
  }
  for (zylBlockGroups& kind : groups)
  {
    kind.FollowSettings();
  }
  std::cout << bytesPerBlock() << " bytes a block with six settings\n";
  EXPECT_LT(bytesPerBlock(), 4000u);

  // What draws a block, and what saves it, leaves it as small as it was.
  vtkNew<zylPropertyCollection> target;
  const std::size_t used = BytesInUse();
  for (int id = 1; id <= Leaves; ++id)
  {
    EXPECT_EQ(
      groups[3].GetSettings(id)->GetProperty("Color"), kept[static_cast<std::size_t>(id) - 1]);
    for (const zylBlockGroups& kind : groups)
    {
      kind.GetSettings(id)->GetHashValue();
      target->DeepCopy(kind.GetSettings(id));
    }
  }
  EXPECT_EQ(groups[0].GetShown().size(), static_cast<std::size_t>(Leaves));
  EXPECT_LT(BytesInUse() - used, 100000u);
}
