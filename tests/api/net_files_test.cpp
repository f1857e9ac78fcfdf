// Network files to the byte and back, and what is wrong with them.
#include "net_fixture.h"

namespace {

class NetworkFiles : public NetworkTest {};

TEST_F(NetworkFiles, NumberedFilesAreWrittenAndRead) {
  fill();
  ASSERT_EQ(KLVNETchgobjsen(env, net, KLV_MAXIMIZE), 0);
  ASSERT_EQ(KLVNETwriteprob(env, net, path("a.min").c_str(), nullptr), 0);
  EXPECT_EQ(text_of("a.min").substr(0, 139),
            "c network problem net\nc\np min 4 5\ns max\n"
            "n 1                6\nn 4               -6\n"
            "a 1 2                0                4                1\n");
  EXPECT_EQ(take(warnings), "");
  for (const std::string name : {"a.min", "b.min.gz", "c.min.bz2"}) {
    ASSERT_EQ(KLVNETwriteprob(env, net, path(name).c_str(), nullptr), 0);
    int status = 0;
    KLVnet copy = KLVNETcreateprob(env, &status, "");
    ASSERT_EQ(KLVNETreadcopyprob(env, copy, path(name).c_str()), 0);
    EXPECT_EQ(take(results), "Nodes 4  Arcs 5\n");
    EXPECT_EQ(image_of(copy), image());
    EXPECT_EQ(KLVNETfreeprob(env, &copy), 0);
  }
  const int arc = 0;
  const double cost = 1234567.0;
  ASSERT_EQ(KLVNETchgobj(env, net, 1, &arc, &cost), 0);
  ASSERT_EQ(KLVNETwriteprob(env, net, path("a.min").c_str(), nullptr), 0);
  EXPECT_EQ(take(warnings), "Warning:  1 numbers have more digits than were written.\n");
}

TEST_F(NetworkFiles, SectionedFilesAreWrittenAndRead) {
  fill();
  const int arcs[] = {0, 1, 2, 3};
  const double cost = 1e-11, bounds[] = {-2.5, 3, -1e20, -1e20};
  ASSERT_EQ(KLVNETchgobj(env, net, 1, arcs + 3, &cost), 0);
  ASSERT_EQ(KLVNETchgbds(env, net, 4, arcs, "LBLL", bounds), 0);
  const double none = 1e20;
  ASSERT_EQ(KLVNETchgbds(env, net, 1, arcs + 3, "U", &none), 0);
  ASSERT_EQ(KLVNETwriteprob(env, net, path("a.x").c_str(), "net"), 0);
  EXPECT_EQ(take(warnings),
            "Default node names n1, n2 ... being created.\n"
            "Default arc  names a1, a2 ... being created.\n");
  EXPECT_EQ(text_of("a.x"),
            "MINIMIZE NETWORK net\n\nSUPPLY\nn1 : 6\nn4 : -6\n"
            "ARCS\na1 : n1 -> n2\na2 : n1 -> n3\na3 : n2 -> n4\na4 : n3 -> n4\na5 : n2 -> n3\n"
            "OBJECTIVE\na1 : 1\na2 : 2\na3 : 1\na5 : 5\n"
            "BOUNDS\n-2.5 <= a1 <= 4\n a2 = 3\n-inf <= a3 <= 4\n a4 free\nENDNETWORK\n");
  double objective = 0, again = 0;
  ASSERT_EQ(KLVNETprimopt(env, net), 0);
  ASSERT_EQ(KLVNETgetobjval(env, net, &objective), 0);
  ASSERT_EQ(KLVNETreadcopyprob(env, net, path("a.x").c_str()), 0);
  ASSERT_EQ(KLVNETprimopt(env, net), 0);
  ASSERT_EQ(KLVNETgetobjval(env, net, &again), 0);
  EXPECT_NEAR(objective, again, 1e-9);
  // The same as a linear problem, by way of a network file and of an LP file.
  for (const std::string name : {"a.net", "a.lp", "a.mps"}) {
    ASSERT_EQ(KLVNETwriteprob(env, net, path(name).c_str(), nullptr), 0);
    ASSERT_EQ(KLVreadcopyprob(env, lp, path(name).c_str(), nullptr), 0);
    ASSERT_EQ(KLVlpopt(env, lp), 0);
    ASSERT_EQ(KLVgetobjval(env, lp, &again), 0);
    EXPECT_NEAR(objective, again, 1e-9);
  }
}

TEST_F(NetworkFiles, RepeatedDefinitionsWarn) {
  const std::string file = put("r.net",
                               "minimize network\nsupply\nu:1\nu : 2\nv : -2\narcs\n"
                               "e: u -> v\ne : u->v\nobjective\ne : 1\ne : 3\nbounds\n"
                               "1 <= e <= 5\ne <= 0\nendnetwork\n");
  ASSERT_EQ(KLVNETreadcopyprob(env, net, file.c_str()), 0);
  EXPECT_EQ(take(warnings),
            "Supply value for node u overridden near line 4.\n"
            "Nodes for arc e overridden near line 8.\n"
            "Arc 'e' repeats.\n"
            "Bounds for arc e overridden near line 14.\n"
            "Warning:  Bounds on 'e' contradictory.\n");
  double supply[2], cost = 0;
  EXPECT_EQ(KLVNETgetsupply(env, net, supply, 0, 1), 0);
  EXPECT_EQ(KLVNETgetobj(env, net, &cost, 0, 0), 0);
  EXPECT_TRUE(supply[0] == 2 && supply[1] == -2 && cost == 3);
}

TEST_F(NetworkFiles, FaultsAreTold) {
  struct Case {
    const char* text;
    int code;
  };
  const Case cases[] = {
      {"p max 2 1\n", 1531},
      {"p min 2\n", 1530},
      {"p min 2 1\na 1 3 0 1 1\n", 1530},
      {"p min 2 1\na 1 2 0 1\n", 1530},
      {"p min 2 1\na 1 2 0 1 x\n", 1530},
      {"p min 2 0\na 1 2 0 1 1\n", 1530},
      {"p min 2 1\nc a comment\n", 1538},
      {"nothing\n", 1538},
      {"", 1538},
      {"p min 2 0\nc\nx\n", 1537},
      {"MINIMIZE NETWORK\nSUPPLY\nn : 1\n", 1538},
      {"MINIMIZE GRAPH\n", 1530},
      {"MINIMIZE NETWORK\nOBJECTIVE\na : 1\nENDNETWORK\n", 1532},
      {"MINIMIZE NETWORK\nARCS\na : b\nENDNETWORK\n", 1530},
      {"MINIMIZE NETWORK\nARCS\na : \001 -> b\nENDNETWORK\n", 1537},
  };
  for (const Case& bad : cases) {
    SCOPED_TRACE(bad.text);
    fill();
    (void)take(errors);
    EXPECT_EQ(KLVNETreadcopyprob(env, net, put("bad", bad.text).c_str()), bad.code);
    EXPECT_EQ(KLVNETgetnumnodes(env, net), 0);
    const std::string line = take(errors);
    EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1);
    EXPECT_EQ(line.find("near line 3 ") != std::string::npos, bad.code == 1537);
  }
  fill();
  EXPECT_EQ(KLVNETreadcopyprob(env, net, path("missing").c_str()), 1423);
  EXPECT_EQ(KLVNETgetnumnodes(env, net), 4);
  EXPECT_EQ(KLVNETreadcopyprob(env, net, nullptr), 1004);
  EXPECT_EQ(KLVNETwriteprob(env, net, nullptr, "net"), 1421);
  EXPECT_EQ(KLVNETwriteprob(env, net, path("x").c_str(), "rlp"), 1424);
  EXPECT_EQ(KLVNETwriteprob(env, net, path("no/x").c_str(), "min"), 1422);
}

TEST_F(NetworkFiles, BasesComeBack) {
  fill();
  EXPECT_EQ(KLVNETbasewrite(env, net, path("n.bas").c_str()), 1262);
  ASSERT_EQ(KLVNETprimopt(env, net), 0);
  ASSERT_EQ(KLVNETbasewrite(env, net, path("n.bas").c_str()), 0);
  const std::string text = text_of("n.bas");
  EXPECT_EQ(text.substr(0, text.find('\n')), "NAME          net  Iterations " +
                                                 std::to_string(KLVNETgetitcnt(env, net)) +
                                                 "  Rows 4  Cols 5");
  EXPECT_NE(text.find(" XL a"), std::string::npos);
  fill();
  ASSERT_EQ(KLVNETreadcopybase(env, net, path("n.bas").c_str()), 0);
  ASSERT_EQ(KLVNETprimopt(env, net), 0);
  EXPECT_EQ(KLVNETgetitcnt(env, net), 0);
  EXPECT_EQ(KLVNETgetstat(env, net), 1);
}

}  // namespace
