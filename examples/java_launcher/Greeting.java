package demo;

import java.nio.file.Path;

/** Greets everybody on the command line, and tells which program it does so in. */
public class Greeting {
  public static void main(String[] names) {
    String program = ProcessHandle.current().info().command().orElse("?");
    System.out.println("Hello, " + String.join(" and ", names) + "!");
    System.out.println("This class runs inside " + Path.of(program).getFileName() + ".");
  }
}
